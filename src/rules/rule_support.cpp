#include "rules/rule_support.h"

#include <algorithm>
#include <utility>

#include "platform/text.h"

namespace vesk::rules {

void addCard(std::vector<Card>& cards, const CardDescription& description, std::vector<Entry> entries) {
    std::optional<Card> card = Scanner::makeCard(description, std::move(entries));
    if (card) {
        cards.push_back(*std::move(card));
    }
}

std::vector<Card> cardOf(const CardDescription& description, std::vector<Entry> entries) {
    std::vector<Card> cards;
    addCard(cards, description, std::move(entries));
    return cards;
}

void addChildren(std::vector<Entry>& entries, Probe& probe, const std::filesystem::path& place, ListingDetail detail,
                 const Filter& filter) {
    addListed(entries, probe, place, childrenOrBlocked(probe, place, detail), filter);
}

std::vector<Entry> childrenIn(Probe& probe, std::string_view placeInHome, ListingDetail detail, const Filter& filter) {
    std::vector<Entry> entries;
    addChildren(entries, probe, Scanner::home() / placeInHome, detail, filter);
    return entries;
}

void addListed(std::vector<Entry>& entries, Probe& probe, const std::filesystem::path& place,
               const std::vector<FolderItem>& children, const Filter& filter) {
    for (const FolderItem& item : children) {
        std::optional<Offer> offer = filter(item);
        if (!offer) {
            continue;
        }
        if (std::optional<Entry> entry = probe.entry(place / item.name, std::move(offer->name))) {
            if (offer->judgedBy.modified || offer->judgedBy.accessed) {
                probe.judgedBy[entry->url] = offer->judgedBy;
            }
            entries.push_back(*std::move(entry));
        }
    }
}

std::vector<FolderItem> childrenOf(const std::filesystem::path& folder, ListingDetail detail) {
    return listFolder(folder, detail).items;
}

std::vector<FolderItem> childrenOrBlocked(Probe& probe, const std::filesystem::path& folder, ListingDetail detail) {
    FolderListing listing = listFolder(folder, detail);
    if (listing.error && Probe::isPermission(*listing.error)) {
        probe.blocked = true;
    }
    return std::move(listing.items);
}

bool changedBefore(Date cutOff, const std::optional<Date>& modified) {
    return modified && *modified < cutOff;
}

bool untouchedSince(Date cutOff, const ResourceValues& values) {
    return changedBefore(cutOff, values.contentModificationDate) &&
           (!values.contentAccessDate || *values.contentAccessDate < cutOff);
}

std::string label(std::string_view fileName) {
    return decodedUtf8(fileName);
}

bool isAmong(std::string_view name, std::span<const std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool startsWithAny(std::string_view name, std::span<const std::string_view> prefixes) {
    return std::any_of(prefixes.begin(), prefixes.end(),
                       [&](std::string_view prefix) { return name.starts_with(prefix); });
}

std::string_view pathExtension(std::string_view fileName) {
    const std::size_t dot = fileName.rfind('.');
    return dot == std::string_view::npos || dot == 0 ? std::string_view() : fileName.substr(dot + 1);
}

}  // namespace vesk::rules

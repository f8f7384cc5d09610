#include "rules/listing.h"

#include <utility>

namespace vesk::rules {

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

std::vector<Card> listOf(std::optional<Card> card) {
    std::vector<Card> cards;
    if (card) {
        cards.push_back(*std::move(card));
    }
    return cards;
}

}  // namespace vesk::rules

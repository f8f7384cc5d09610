// Previews and render files of video editors, which make them again from the footage.

#include <array>
#include <string_view>

#include "core/scanner.h"
#include "platform/text.h"
#include "rules/rule_support.h"
#include "rules/rules.h"

namespace vesk::rules {

namespace {

constexpr FixedLocation premiere[] = {
    {"Library/Application Support/Adobe/Common/Media Cache Files", "Premiere media cache"},
    {"Library/Application Support/Adobe/Common/Media Cache", "Premiere media cache"},
    {"Library/Application Support/Adobe/Common/Peak Files", "Premiere audio previews"},
};

constexpr std::string_view cacheFolder = "Library/Caches";
constexpr std::string_view afterEffectsPrefix = "Adobe After Effects";
constexpr const char* afterEffectsName = "After Effects cache";

constexpr std::string_view movies = "Movies";
constexpr std::string_view libraryExtension = "fcpbundle";
constexpr std::array<std::string_view, 2> rendered = {"Render Files", "Transcoded Media"};
constexpr const char* finalCutName = "Final Cut ";

constexpr CardDescription videoCard = {
    .id = "video",
    .title = "Video editing caches",
    .symbol = "film",
    .bucket = Bucket::smart,
    .confidence = 0.8,
    .risk = 2.0,
    .summary = "Preview and render files from Final Cut, Premiere and After Effects.",
    .why =
        "Your projects and original footage aren't in here. The apps rebuild these previews, but big timelines may "
        "need time to re-render.",
};

std::optional<Offer> afterEffectsCache(const FolderItem& item) {
    return item.name.starts_with(afterEffectsPrefix) ? std::optional(Offer{afterEffectsName}) : std::nullopt;
}

std::optional<Offer> renderedFolder(const FolderItem& item) {
    return isAmong(item.name, rendered) ? std::optional(Offer{finalCutName + lowercased(item.name)}) : std::nullopt;
}

// Render files lie in an event of the library, or in a folder inside an event.
void addEvent(Probe& probe, const std::filesystem::path& event, std::vector<Entry>& entries) {
    const std::vector<FolderItem> items = childrenOrBlocked(probe, event, ListingDetail::kinds);
    addListed(entries, probe, event, items, renderedFolder);
    for (const FolderItem& item : items) {
        if (item.isDirectory) {
            addChildren(entries, probe, event / item.name, ListingDetail::kinds, renderedFolder);
        }
    }
}

void addFinalCut(Probe& probe, std::vector<Entry>& entries) {
    const std::filesystem::path location = Scanner::home() / movies;
    for (const FolderItem& item : childrenOrBlocked(probe, location, ListingDetail::kinds)) {
        if (pathExtension(item.name) == libraryExtension) {
            const std::filesystem::path library = location / item.name;
            for (const FolderItem& event : childrenOrBlocked(probe, library, ListingDetail::kinds)) {
                addEvent(probe, library / event.name, entries);
            }
        }
    }
}

}  // namespace

std::vector<Card> videoEditingCaches(Probe& probe) {
    std::vector<Entry> entries = Scanner::fixed(probe, premiere);
    addChildren(entries, probe, Scanner::home() / cacheFolder, ListingDetail::kinds, afterEffectsCache);
    addFinalCut(probe, entries);
    return cardOf(videoCard, std::move(entries));
}

}  // namespace vesk::rules

#include "rules/sandboxed_leftovers.h"

#include <algorithm>

#include "core/scanner.h"
#include "platform/files/files.h"
#include "rules/rule_support.h"

namespace vesk::rules {

namespace {

constexpr std::string_view flatpakFolders = ".var/app";
constexpr std::string_view snapFolders = "snap";

// Snaps' folders hold one for each revision, named by its number or by "x" and one, and these two.
bool isFolderOfSnap(const std::filesystem::path& folder) {
    const std::vector<FolderItem> children = childrenOf(folder, ListingDetail::kinds);
    return isSnapName(folder.filename().string()) &&
           std::any_of(children.begin(), children.end(), [](const FolderItem& item) {
               return item.name == "common" || item.name == "current" ||
                      (!item.name.empty() && item.name.find_first_not_of("x0123456789") == std::string::npos);
           });
}

}  // namespace

bool SandboxedLeftovers::isRemovedFlatpak(const std::filesystem::path& folder) const {
    return flatpaks_.areKnown() && !flatpaks_.contains(folder.filename().string());
}

bool SandboxedLeftovers::isRemovedSnap(const std::filesystem::path& folder) const {
    return snaps_.areKnown() && !snaps_.contains(folder.filename().string()) && isFolderOfSnap(folder);
}

void SandboxedLeftovers::addTo(std::vector<Entry>& entries, Probe& probe) const {
    const PlaceFilter old = lastChangedBefore(cutOff_);
    addItemsAt(entries, probe, linuxFlatpakFolders,
               [&](const PlacedItem& item) { return isRemovedFlatpak(item.path) ? old(item) : std::nullopt; });
    addItemsAt(entries, probe, linuxSnapFolders,
               [&](const PlacedItem& item) { return isRemovedSnap(item.path) ? old(item) : std::nullopt; });
}

bool SandboxedLeftovers::hold(const std::filesystem::path& item) const {
    const PlaceFilter old = lastChangedBefore(cutOff_);
    for (std::filesystem::path folder = item; isBelowHome(folder); folder = folder.parent_path()) {
        const bool isFlatpaks = folder.parent_path() == Scanner::home() / flatpakFolders;
        const bool isSnaps = folder.parent_path() == Scanner::home() / snapFolders;
        if ((isFlatpaks && isRemovedFlatpak(folder)) || (isSnaps && isRemovedSnap(folder))) {
            return old({folder, {}, {}}).has_value();
        }
    }
    return false;
}

}  // namespace vesk::rules

// Finds the items at the places of the Linux tables (linux_places.h). Called by rules, each on its own thread.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/probe.h"
#include "core/scanner.h"
#include "rules/linux_places.h"

namespace vesk::rules {

/// Whether the current world is a Linux desktop. If not, itemsAt and addItemsAt find nothing.
bool isOnLinux();

/// An item at a place.
struct PlacedItem {
    std::filesystem::path path;
    /// The name of its entry; if empty, the application's name is used.
    std::string_view name;
    /// The file name of the application's folder.
    std::string application;
    Probe::Contents contents = Probe::Contents::any;
};

/// The items that exist at these places, in the table's order. An item that several paths lead to (same device and
/// inode) appears once; items inside another item are left out. So are places outside the home, and any folder that is
/// or contains the home, one of the user's own folders, or the folder of all programs' caches, settings or data. A
/// denied permission sets the probe's `blocked`.
std::vector<PlacedItem> itemsAt(Probe& probe, std::span<const LinuxPlace> places);

/// Called for each item: absent to skip it; otherwise, the dates by which it was judged, if it is offered for its age.
using PlaceFilter = std::function<std::optional<ItemDates>(const PlacedItem&)>;

/// Appends a measured entry for each of these items that the filter takes. An application is named as in its desktop
/// file, or else like its folder.
void addItemsAt(
    std::vector<Entry>& entries, Probe& probe, std::span<const LinuxPlace> places,
    const PlaceFilter& filter = [](const PlacedItem&) { return ItemDates{}; });

/// Takes the items last changed before the cut-off.
PlaceFilter lastChangedBefore(Date cutOff);

/// The entries of a rule that consists of places only: the Mac's fixed ones and, on Linux, also those of its table.
std::vector<Entry> entriesAt(Probe& probe, std::span<const FixedLocation> mac, std::span<const LinuxPlace> onLinux);

/// Whether a path lies below a folder, but is not that folder. Compares the paths as written.
bool liesBelow(const std::filesystem::path& path, const std::filesystem::path& folder);

/// Whether a path lies below the home folder, but is not the home. Compares the paths after normalising them.
bool isBelowHome(const std::filesystem::path& path);

/// The folders that the start of a pattern ("~", "CACHE", "$HF_HOME") stands for; only those below the home, except for
/// "~".
std::vector<std::filesystem::path> startsOf(std::string_view start);

}  // namespace vesk::rules

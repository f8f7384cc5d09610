// Finds what lies at the places of Linux's tables (linux_places.h) in the world in force. Called by rules, each on its
// own thread.
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

/// Whether the world in force shows a Linux desktop. Elsewhere none of the functions below finds anything.
bool isOnLinux();

/// An item at a place.
struct PlacedItem {
    std::filesystem::path path;
    /// The name of its entry; empty where the application's stands for it.
    std::string_view name;
    /// The file name of the application's folder.
    std::string application;
};

/// The items that exist at these places, in the order of the table and of their names: each once, by device and inode,
/// however many paths lead to it, and none that lies in another one. Nothing that a variable puts outside the home, and
/// no folder that holds the home, one of the user's own folders or all programs' caches, settings or data. A denial of
/// permission sets the probe's `blocked`.
std::vector<PlacedItem> itemsAt(Probe& probe, std::span<const LinuxPlace> places);

/// Appends an entry for each of these items that the filter takes, measured whole; of an item that is offered for its
/// age the filter tells the dates, absent for one that is left. An application has the name of its desktop file, or
/// else its folder's.
using PlaceFilter = std::function<std::optional<ItemDates>(const PlacedItem&)>;
void addItemsAt(
    std::vector<Entry>& entries, Probe& probe, std::span<const LinuxPlace> places,
    const PlaceFilter& filter = [](const PlacedItem&) { return ItemDates{}; });

/// Takes the items that were last changed before the cut-off, and judges them by that.
PlaceFilter lastChangedBefore(Date cutOff);

/// The entries of a rule that knows nothing but places: a Mac's fixed ones, and on Linux those of its table too.
std::vector<Entry> entriesAt(Probe& probe, std::span<const FixedLocation> mac, std::span<const LinuxPlace> onLinux);

/// Whether a path lies below a folder, as they are written; the folder itself does not.
bool liesBelow(const std::filesystem::path& path, const std::filesystem::path& folder);

/// Whether a path lies below the home folder, as it is written; the home itself does not.
bool isBelowHome(const std::filesystem::path& path);

/// The folders that a place of a table can start at, below the home alone: of "CACHE", "$HF_HOME" and so on.
std::vector<std::filesystem::path> startsOf(std::string_view start);

}  // namespace vesk::rules

// The system calls behind listing and walking: opening a folder without a trace, reading the names in it, and one
// look at one item. Called by files.cpp, tree_walk.cpp and the Trash; whoever opens something uses Descriptor. Each
// function takes a descriptor, so that a caller with an open folder cannot be led elsewhere by a path that changes
// meanwhile. Callable from any thread.
#pragma once

#include <functional>

#include "platform/files/descriptor.h"
#include "platform/files/resource_values.h"

namespace vesk {

enum class ItemKind { folder, regularFile, other, unknown };

/// What a folder's own listing says of an item. `name` and `values` are valid during the call that hands it over.
struct ListedItem {
    const char* name;
    ItemKind kind;
    /// What a look at the item would tell, where the system delivers it with the names (macOS); else null. Of a folder
    /// it tells no size.
    const ResourceValues* values = nullptr;
};

/// Whether a link at the very end of the path is followed.
enum class LastLink { follow, doNotFollow };

/// Opens the folder at a path relative to `parent` (AT_FDCWD for an absolute one), without changing its access time
/// where the system allows that. Gives an empty descriptor with errno set on failure; ENOTDIR or ELOOP when it is no
/// folder or a refused link.
Descriptor openFolder(int parent, const char* path, LastLink lastLink);

/// Opens a child folder for a walk: no link is followed, and a child on another device (or behind a mount point)
/// fails with EXDEV.
Descriptor openChildOnSameDevice(int parent, const char* name);

/// Reads every name of an open folder except "." and "..", in the file system's order; once for each opening, since it
/// leaves off at the folder's end. Returns 0, or the errno value that ended the reading.
int readNames(int folder, const std::function<void(ListedItem)>& visit);

/// Which dates a look asks for: both, or the one that tells the last use. The latter is the access date, and the
/// modification date only where the file system keeps no access date; the other one may or may not come with it.
enum class WantedDates { both, lastUse };

/// Looks at one item of an open folder, not following links. Returns 0, or an errno value.
int statItem(int folder, const char* name, ResourceValues& values, WantedDates dates = WantedDates::both);

/// The same for an item of a listing: what came with it, or else a look.
inline int statItem(int folder, const ListedItem& item, ResourceValues& values, WantedDates dates = WantedDates::both) {
    if (item.values == nullptr) {
        return statItem(folder, item.name, values, dates);
    }
    values = *item.values;
    return 0;
}

}  // namespace vesk

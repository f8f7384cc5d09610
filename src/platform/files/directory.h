// The system calls behind listing and walking: opening a folder without a trace, reading its names, and statting one
// item. Each function takes a descriptor, so that a path that changes meanwhile cannot lead a caller elsewhere.
// Callable from any thread.
#pragma once

#include <functional>

#include "platform/files/descriptor.h"
#include "platform/files/resource_values.h"

namespace vesk {

enum class ItemKind { folder, regularFile, other, unknown };

/// What a folder's listing says about an item. `name` and `values` are valid only during the callback.
struct ListedItem {
    const char* name;
    ItemKind kind;
    /// What `statItem` would return, if the system delivers it with the names (macOS); else null. For a folder, no
    /// size.
    const ResourceValues* values = nullptr;
};

/// Whether a link at the end of the path is followed.
enum class LastLink { follow, doNotFollow };

/// Opens the folder at a path relative to `parent` (AT_FDCWD for an absolute path), without changing its access time if
/// the system allows that. On failure returns an empty descriptor with errno set; ENOTDIR or ELOOP if it is not a
/// folder, or a link that is not to be followed.
Descriptor openFolder(int parent, const char* path, LastLink lastLink);

/// Opens a child folder for a walk: no link is followed, and a child on another device (or behind a mount point)
/// fails with EXDEV.
Descriptor openChildOnSameDevice(int parent, const char* name);

/// Reads every name in an open folder except "." and "..", in the file system's order. Call it once per opened folder,
/// since it ends at the folder's end. Returns 0, or the errno value that stopped it.
int readNames(int folder, const std::function<void(ListedItem)>& visit);

/// Which dates to read: both, or only that of the last use, which is the access date or, if the file system keeps none,
/// the modification date. The other date may come with it.
enum class WantedDates { both, lastUse };

/// Stats one item of an open folder, not following links. Returns 0, or an errno value.
int statItem(int folder, const char* name, ResourceValues& values, WantedDates dates = WantedDates::both);

/// The same for a listed item: uses the values that came with it, if any.
inline int statItem(int folder, const ListedItem& item, ResourceValues& values, WantedDates dates = WantedDates::both) {
    if (item.values == nullptr) {
        return statItem(folder, item.name, values, dates);
    }
    values = *item.values;
    return 0;
}

}  // namespace vesk

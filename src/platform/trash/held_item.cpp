#include "platform/trash/held_item.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "platform/files/directory.h"
#include "platform/files/resource_values.h"
#include "platform/text.h"
#include "platform/world.h"

namespace vesk {

namespace {

namespace fs = std::filesystem;

// Whether the item's path leads into the folder without a step back. "/" and "" hold nothing.
bool leadsBelow(const fs::path& item, const fs::path& folder) {
    if (!folder.is_absolute() || !folder.has_relative_path()) {
        return false;
    }
    auto part = item.begin();
    for (const fs::path& expected : folder) {
        if (expected.empty()) {
            continue;  // after a slash at the end
        }
        if (part == item.end() || *part != expected) {
            return false;
        }
        ++part;
    }
    if (part == item.end()) {
        return false;
    }
    for (; part != item.end(); ++part) {
        if (part->empty() || *part == "." || *part == "..") {
            return false;
        }
    }
    return true;
}

// The one place that says what Vesk may take away: what the user sees as lying in the home folder, and the system's
// folders of temporary files. The path counts as the scan saw it, so a caches folder that is a link to another disk
// stays within reach; that the link leads where it led then is told by the identity of the folder.
bool isWithinReach(const fs::path& item) {
    return leadsBelow(item, world().home) || leadsBelow(item, world().rooted("/private/var/folders"));
}

// Why an item is not the old one that was seen, by one look at it; 0 when it is, or when its age is of no matter.
int failureIfNewer(const SeenItem& item, int folder) {
    if (!item.dates.modified && !item.dates.accessed) {
        return 0;
    }
    ResourceValues values;
    if (const int failure = statItem(folder, item.path.filename().c_str(), values)) {
        return failure;
    }
    return isNewer(values, item.dates) ? ESTALE : 0;
}

}  // namespace

int holdItem(const SeenItem& item, HeldItem& held) {
    if (!isWithinReach(item.path)) {
        return EPERM;
    }
    if (!isUtf8(item.path.string())) {
        return EILSEQ;
    }
    Descriptor folder = openFolder(AT_FDCWD, item.path.parent_path().c_str(), LastLink::follow);
    if (!folder) {
        return errno;
    }
    if (!item.folder || folderIdentity(folder.get()) != item.folder) {
        return ESTALE;
    }
    if (const int failure = failureIfNewer(item, folder.get())) {
        return failure;
    }
    held = {item.path, item.path.filename().string(), std::move(folder)};
    return 0;
}

}  // namespace vesk

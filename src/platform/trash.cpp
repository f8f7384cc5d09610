#include "platform/trash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <string>

#include "platform/folder_reader.h"
#include "platform/syncing.h"
#include "platform/text.h"
#include "platform/trash_freedesktop.h"
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

bool isUsable(const fs::path& path) {
    return path.is_absolute() && path.native().find('\0') == fs::path::string_type::npos;
}

// Whether something has this name, a link that leads nowhere too: 0, ENOENT when nothing has, or why it cannot be told.
int lookFor(const fs::path& path, struct stat& found) {
    if (lstat(path.c_str(), &found) == 0) {
        return 0;
    }
    return errno == ENOTDIR ? ENOENT : errno;
}

// Where no rename refuses to replace, a file is given its second name before it loses the first. A program that ended
// between the two leaves it with both.
bool isOneFileOfTwoNames(const struct stat& first, const struct stat& second) {
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino && !S_ISDIR(first.st_mode);
}

// Where a file system does not keep the order of changes to names, a power loss may find an item's old name gone and
// the new one not made. The new one first, then.
void syncWhereNamesAreNotOrdered(const fs::path& newFolder, const fs::path& oldFolder) {
    for (const fs::path& folder : {newFolder, oldFolder}) {
        const Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::follow);
        if (opened && !keepsOrderOfNames(opened.get())) {
            fsync(opened.get());
        }
    }
}

}  // namespace

TrashOutcome moveToTrash(const SeenItem& item) {
    const auto refused = [](int number) { return TrashOutcome{posixError(number), {}}; };
    if (!isWithinReach(item.path)) {
        return refused(EPERM);
    }
    if (!isUtf8(item.path.string())) {
        return refused(EILSEQ);
    }
    const Descriptor folder = openFolder(AT_FDCWD, item.path.parent_path().c_str(), LastLink::follow);
    if (!folder) {
        return refused(errno);
    }
    if (!item.folder || folderIdentity(folder.get()) != item.folder) {
        return refused(ESTALE);
    }
    return moveToUsersTrash({item.path, item.path.filename().string(), folder.get()});
}

std::optional<PlatformError> putBack(const fs::path& trashed, const fs::path& original) {
    if (!isUsable(trashed) || !isUsable(original)) {
        return posixError(EINVAL);
    }
    struct stat item {};
    struct stat inPlace {};
    const int missing = lookFor(trashed, item);
    const bool taken = lookFor(original, inPlace) == 0;
    if (missing != 0) {
        return posixError(missing);
    }
    if (taken) {
        if (!isOneFileOfTwoNames(item, inPlace)) {
            return posixError(EEXIST);
        }
        return unlink(trashed.c_str()) != 0 ? std::optional(posixError(errno)) : std::nullopt;
    }
    constexpr unsigned defaultMode = 0777;
    if (const int failure = makeFolders(original.parent_path(), defaultMode)) {
        return posixError(failure);
    }
    if (const int failure = moveWithoutOverwriting(AT_FDCWD, trashed.c_str(), AT_FDCWD, original.c_str())) {
        return posixError(failure);
    }
    syncWhereNamesAreNotOrdered(original.parent_path(), trashed.parent_path());
    return std::nullopt;
}

void forgetReturned(const fs::path& trashed, const fs::path& original, Returned when) {
    if (when == Returned::now) {
        forgetTrashed(trashed);
        return;
    }
    struct stat found {};
    // In any other case the record stays: an item that cannot be seen now need not be gone.
    if (isUsable(trashed) && isUsable(original) && lookFor(trashed, found) == ENOENT && lookFor(original, found) == 0) {
        forgetLostRecord(trashed, original);
    }
}

bool syncMoves(const std::vector<fs::path>& trashed) {
    std::set<fs::path> folders;
    for (const fs::path& place : trashed) {
        folders.insert(place.parent_path());
    }
    return std::all_of(folders.begin(), folders.end(), [](const fs::path& folder) {
        const Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::follow);
        // Where there is no such folder (any more), nothing can have been moved.
        return opened ? syncNames(opened.get()) : errno == ENOENT || errno == ENOTDIR;
    });
}

}  // namespace vesk

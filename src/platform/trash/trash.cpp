#include "platform/trash/trash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "platform/files/folder_reader.h"
#include "platform/text.h"
#include "platform/trash/freedesktop_trash.h"
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
int refusalOfNewer(const SeenItem& item, int folder) {
    if (!item.dates.modified && !item.dates.accessed) {
        return 0;
    }
    ResourceValues values;
    if (const int failure = lookAt(folder, item.path.filename().c_str(), values)) {
        return failure;
    }
    return isNewer(values, item.dates) ? ESTALE : 0;
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
    if (const int failure = refusalOfNewer(item, folder.get())) {
        return refused(failure);
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
        // Back already, by an undo that ended before it removed the record. In any other case the record stays: an item
        // that cannot be seen now need not be gone.
        if (missing == ENOENT && taken) {
            forgetLostRecord(trashed, original);
        }
        return posixError(missing);
    }
    if (taken) {
        if (!isOneFileOfTwoNames(item, inPlace)) {
            return posixError(EEXIST);
        }
        if (unlink(trashed.c_str()) != 0) {
            return posixError(errno);
        }
        forgetTrashed(trashed);
        return std::nullopt;
    }
    constexpr unsigned defaultMode = 0777;
    if (const int failure = makeFolders(original.parent_path(), defaultMode)) {
        return posixError(failure);
    }
    if (const int failure = moveWithoutOverwriting(AT_FDCWD, trashed.c_str(), AT_FDCWD, original.c_str())) {
        return posixError(failure);
    }
    forgetTrashed(trashed);
    return std::nullopt;
}

}  // namespace vesk

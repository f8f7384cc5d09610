#include "platform/trash/trash.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <string>

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/files/identity.h"
#include "platform/files/moving.h"
#include "platform/files/syncing.h"
#include "platform/text.h"
#include "platform/trash/freedesktop_trash.h"
#include "platform/trash/trash_record.h"
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

bool isUsable(const fs::path& path) {
    return path.is_absolute() && path.native().find('\0') == fs::path::string_type::npos;
}

// Why the look just made found nothing: ENOENT when there is nothing, or what keeps it from being told.
int failureOfLastLook() {
    return errno == ENOTDIR ? ENOENT : errno;
}

// The same for a look at this path; 0 when something is there.
int failureOfLook(const fs::path& path) {
    return itemIdentity(AT_FDCWD, path.c_str()) ? 0 : failureOfLastLook();
}

// What there is to know of an item before it is put back.
struct Finding {
    // Why it cannot be put back; 0 when it can.
    int failure = 0;
    std::optional<LastingIdentity> item;
    // Whether it is at its place already, and has kept its name in the Trash: where no rename refuses to replace, a
    // file is given its second name before it loses the first, and a program may end between the two.
    bool hasBothNames = false;
};

// Whether what lies in the Trash is the item, and not another one of its name.
bool isTheItem(const TrashedItem& item, const LastingIdentity& found) {
    if (!usersTrashKeepsRecords()) {
        return item.identity && areSurelySame(item.identity->item, found);
    }
    if (item.identity && !mayBeSame(item.identity->item, found)) {
        return false;
    }
    return !recordOf(item).path.empty();
}

// Whether the item is at its place, as far as it can be told.
bool isBack(const TrashedItem& item) {
    const std::optional<LastingIdentity> found = lastingIdentity(item.original);
    return found && (!item.identity || mayBeSame(item.identity->item, *found));
}

Finding lookFor(const TrashedItem& item) {
    Finding finding;
    finding.item = lastingIdentity(item.place);
    if (!finding.item) {
        finding.failure = failureOfLastLook();
        return finding;
    }
    if (!isTheItem(item, *finding.item)) {
        finding.failure = ESTALE;
        return finding;
    }
    const int inPlace = failureOfLook(item.original);
    if (inPlace == 0) {
        finding.hasBothNames = areTwoNamesOfOneFile(AT_FDCWD, item.place.c_str(), AT_FDCWD, item.original.c_str());
        finding.failure = finding.hasBothNames ? 0 : EEXIST;
    } else if (inPlace != ENOENT) {
        finding.failure = inPlace;
    }
    return finding;
}

// Moves the item; another one that has got its name in the Trash in this very moment goes back there.
int moveBack(const TrashedItem& item, const LastingIdentity& known) {
    if (const int failure = moveWithoutOverwriting(AT_FDCWD, item.place.c_str(), AT_FDCWD, item.original.c_str())) {
        return failure;
    }
    const std::optional<LastingIdentity> moved = lastingIdentity(item.original);
    if (!moved || mayBeSame(*moved, known)) {
        return 0;
    }
    moveWithoutOverwriting(AT_FDCWD, item.original.c_str(), AT_FDCWD, item.place.c_str());
    return ESTALE;
}

// Whether names in a folder may be changed, as far as it can be told; 0 or an errno value.
int failureOfChange(const fs::path& folder) {
    return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0 ? 0 : errno;
}

// The same for a folder that will be made when it is missing.
int failureOfMaking(fs::path folder) {
    while (folder.has_relative_path() && failureOfLook(folder) == ENOENT) {
        folder = folder.parent_path();
    }
    struct stat found {};
    if (stat(folder.c_str(), &found) != 0) {
        return errno == ENOENT ? ENOTDIR : errno;  // a link that leads nowhere
    }
    return S_ISDIR(found.st_mode) ? failureOfChange(folder) : ENOTDIR;
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
    const auto notMoved = [](int number) { return TrashOutcome{posixError(number), {}, {}}; };
    if (!isWithinReach(item.path)) {
        return notMoved(EPERM);
    }
    if (!isUtf8(item.path.string())) {
        return notMoved(EILSEQ);
    }
    const Descriptor folder = openFolder(AT_FDCWD, item.path.parent_path().c_str(), LastLink::follow);
    if (!folder) {
        return notMoved(errno);
    }
    if (!item.folder || folderIdentity(folder.get()) != item.folder) {
        return notMoved(ESTALE);
    }
    if (const int failure = failureIfNewer(item, folder.get())) {
        return notMoved(failure);
    }
    return moveToUsersTrash({item.path, item.path.filename().string(), folder.get()});
}

std::optional<PlatformError> restoreItem(const TrashedItem& item) {
    if (!isUsable(item.place) || !isUsable(item.original)) {
        return posixError(EINVAL);
    }
    const Finding finding = lookFor(item);
    if (finding.failure != 0) {
        return posixError(finding.failure);
    }
    if (finding.hasBothNames) {
        return unlink(item.place.c_str()) != 0 ? std::optional(posixError(errno)) : std::nullopt;
    }
    constexpr unsigned defaultMode = 0777;
    if (const int failure = makeFolders(item.original.parent_path(), defaultMode)) {
        return posixError(failure);
    }
    if (const int failure = moveBack(item, *finding.item)) {
        return posixError(failure);
    }
    syncWhereNamesAreNotOrdered(item.original.parent_path(), item.place.parent_path());
    return std::nullopt;
}

void forgetReturned(const TrashedItem& item) {
    // In any other case the record stays: an item that cannot be seen now need not be gone.
    if (isUsable(item.place) && isUsable(item.original) && failureOfLook(item.place) == ENOENT && isBack(item)) {
        forgetLostRecord(item);
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

TrashState stateInTrash(const TrashedItem& item) {
    if (!isUsable(item.place) || !isUsable(item.original)) {
        return TrashState::gone;
    }
    int failure = lookFor(item).failure;
    if (failure == 0) {
        failure = failureOfChange(item.place.parent_path());
    }
    if (failure == 0) {
        failure = failureOfMaking(item.original.parent_path());
    }
    switch (failure) {
        case 0:
            return TrashState::ready;
        case EEXIST:
            return TrashState::placeTaken;
        case EACCES:
        case EPERM:
        case EROFS:
            return TrashState::denied;
        case ENOENT:
        case ESTALE:
            return item.identity && isBack(item) ? TrashState::back : TrashState::gone;
        default:
            return TrashState::failing;
    }
}

}  // namespace vesk

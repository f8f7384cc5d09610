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
#include "platform/trash/freedesktop_trash.h"
#include "platform/trash/trash_record.h"
#include "platform/world.h"

namespace vesk {

namespace {

namespace fs = std::filesystem;

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
void syncWhereNamesAreNotOrdered(const fs::path& newFolder, const fs::path& oldFolder, NameOrder& order) {
    for (const fs::path& folder : {newFolder, oldFolder}) {
        const Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::follow);
        if (opened && !order.isKept(opened.get())) {
            fsync(opened.get());
        }
    }
}

}  // namespace

std::optional<PlatformError> restoreItem(const TrashedItem& item, NameOrder& order) {
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
    syncWhereNamesAreNotOrdered(item.original.parent_path(), item.place.parent_path(), order);
    return std::nullopt;
}

std::optional<PlatformError> restoreItem(const TrashedItem& item) {
    NameOrder order;
    return restoreItem(item, order);
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

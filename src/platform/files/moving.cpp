#include "platform/files/moving.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/files/files_system.h"
#include "platform/files/identity.h"
#include "platform/files/identity_system.h"

namespace vesk {

namespace {

// What has a name in an open folder; links are not followed.
enum class Name { taken, free, unknown };

Name nameAt(int folder, const char* name, struct stat& found) {
    if (fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) == 0) {
        return Name::taken;
    }
    return errno == ENOENT ? Name::free : Name::unknown;
}

// A disk across a network may make a change and still report a failure: its answer was lost, and when the call is sent
// again, it finds nothing left to do. Whoever believed that would drop the record of an item, or its last name. What
// has the new name now must be the item itself: it may have vanished, and something else have had that name all along.
bool hasMovedNevertheless(const ItemIdentity& item, int fromFolder, const char* name, int toFolder, const char* newName,
                          int failure) {
    struct stat found {};
    return failure != EEXIST && itemIdentity(toFolder, newName) == item &&
           nameAt(fromFolder, name, found) == Name::free;
}

// Removes a name of a file that has another one. It stays when it is somebody else's by now, or the file's last.
int removeExtraName(int folder, const char* name, const struct stat& file) {
    struct stat found {};
    if (fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno;
    }
    if (!isSameFile(file, found) || found.st_nlink < 2) {
        return ESTALE;
    }
    return unlinkat(folder, name, 0) == 0 ? 0 : errno;
}

int renameFolder(int fromFolder, const char* name, int toFolder, const char* newName) {
    struct stat other {};
    switch (nameAt(toFolder, newName, other)) {
        case Name::taken:
            return EEXIST;
        case Name::free:
            return renameat(fromFolder, name, toFolder, newName) == 0 ? 0 : errno;
        case Name::unknown:
            break;
    }
    return errno;
}

// Moves where the file system (NFS, some FUSE) has no rename that refuses to replace. A file gets its second name
// before it loses the first, which fails when the name is taken. A folder cannot have two; a plain rename of one can
// at worst replace an empty folder that came up in this very moment.
int moveInTwoSteps(int fromFolder, const char* name, int toFolder, const char* newName) {
    struct stat item {};
    if (fstatat(fromFolder, name, &item, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno;
    }
    if (S_ISDIR(item.st_mode)) {
        return renameFolder(fromFolder, name, toFolder, newName);
    }
    if (linkat(fromFolder, name, toFolder, newName, 0) != 0) {
        const int failure = errno;
        // Of a file with several names, the new one may be somebody else's.
        if (item.st_nlink > 1 || !areTwoNamesOfOneFile(fromFolder, name, toFolder, newName)) {
            return failure;
        }
    }
    const int failure = removeExtraName(fromFolder, name, item);
    struct stat other {};
    const bool isStillThere = nameAt(fromFolder, name, other) == Name::taken && isSameFile(item, other);
    if (failure == 0 || !isStillThere) {
        return 0;  // what has the first name since is another item, which stays
    }
    removeExtraName(toFolder, newName, item);
    return failure;
}

}  // namespace

int moveWithoutOverwriting(int fromFolder, const char* name, int toFolder, const char* newName) {
    const std::optional<ItemIdentity> item = itemIdentity(fromFolder, name);
    if (!item) {
        return errno;
    }
    int failure = renameExclusively(fromFolder, name, toFolder, newName);
    if (failure == ENOTSUP) {
        failure = moveInTwoSteps(fromFolder, name, toFolder, newName);
    }
    return failure != 0 && hasMovedNevertheless(*item, fromFolder, name, toFolder, newName, failure) ? 0 : failure;
}

int makeFolders(const std::filesystem::path& folder, unsigned mode) {
    struct stat found {};
    if (stat(folder.c_str(), &found) == 0) {
        return S_ISDIR(found.st_mode) ? 0 : ENOTDIR;
    }
    if (errno != ENOENT || !folder.has_relative_path()) {
        return errno;
    }
    if (const int failure = makeFolders(folder.parent_path(), mode)) {
        return failure;
    }
    return mkdir(folder.c_str(), static_cast<mode_t>(mode)) == 0 || errno == EEXIST ? 0 : errno;
}

}  // namespace vesk

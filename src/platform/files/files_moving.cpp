// The half of files.h that changes the disk, and what it goes by.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/files/files.h"
#include "platform/files/files_system.h"

namespace vesk {

namespace {

// What has a name in an open folder; links are not followed.
enum class Name { taken, free, unknown };

Name lookAtName(int folder, const char* name, struct stat& found) {
    if (fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) == 0) {
        return Name::taken;
    }
    return errno == ENOENT ? Name::free : Name::unknown;
}

bool isSameItem(const struct stat& first, const struct stat& second) {
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// A disk across a network may make a change and still report a failure: its answer was lost, and when the call is sent
// again, it finds nothing left to do. Whoever believed that would drop the record of an item, or its last name.
bool hasMovedNevertheless(int fromFolder, const char* name, int toFolder, const char* newName, int failure) {
    struct stat found {};
    return failure != EEXIST && lookAtName(toFolder, newName, found) == Name::taken &&
           lookAtName(fromFolder, name, found) == Name::free;
}

// Moves where the file system (NFS, some FUSE) has no rename that refuses to replace. A file gets its second name
// before it loses the first, which fails when the name is taken. A folder cannot have two; a plain rename of one can
// at worst replace an empty folder that came up in this very moment.
int moveInTwoSteps(int fromFolder, const char* name, int toFolder, const char* newName) {
    struct stat found {};
    struct stat other {};
    if (fstatat(fromFolder, name, &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno;
    }
    if (S_ISDIR(found.st_mode)) {
        if (fstatat(toFolder, newName, &other, AT_SYMLINK_NOFOLLOW) == 0) {
            return EEXIST;
        }
        return errno != ENOENT || renameat(fromFolder, name, toFolder, newName) != 0 ? errno : 0;
    }
    if (linkat(fromFolder, name, toFolder, newName, 0) != 0) {
        const int failure = errno;
        const bool linked = lookAtName(toFolder, newName, other) == Name::taken && isSameItem(found, other);
        if (!linked || found.st_nlink > 1) {
            return failure;  // of a file with several names, the new one may be somebody else's
        }
    }
    if (unlinkat(fromFolder, name, 0) != 0) {
        const int failure = errno;
        // The new name goes only when the first one is known to be there still.
        if (lookAtName(fromFolder, name, other) == Name::taken && isSameItem(found, other)) {
            unlinkat(toFolder, newName, 0);
            return failure;
        }
    }
    return 0;
}

}  // namespace

std::optional<FolderIdentity> folderIdentity(const std::filesystem::path& folder) {
    return folder.empty() ? std::nullopt : folderIdentityAt(AT_FDCWD, folder.c_str());
}

std::optional<FolderIdentity> folderIdentity(int folder) {
    return folderIdentityAt(folder, "");
}

int moveWithoutOverwriting(int fromFolder, const char* name, int toFolder, const char* newName) {
    int failure = renameExclusively(fromFolder, name, toFolder, newName);
    if (failure == ENOTSUP) {
        failure = moveInTwoSteps(fromFolder, name, toFolder, newName);
    }
    return failure != 0 && hasMovedNevertheless(fromFolder, name, toFolder, newName, failure) ? 0 : failure;
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

int writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return errno;
        }
        bytes.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return 0;
}

}  // namespace vesk

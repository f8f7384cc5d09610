// The half of files.h that changes the disk, and what it goes by.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/files.h"
#include "platform/files_system.h"

namespace vesk {

namespace {

// Moves where the file system (NFS, some FUSE) has no rename that refuses to replace. A file gets its second name
// before it loses the first, which fails when the name is taken. A folder cannot have two; a plain rename of one can
// at worst replace an empty folder that came up in this very moment.
int moveInTwoSteps(int fromFolder, const char* name, int toFolder, const char* newName) {
    struct stat found {};
    if (fstatat(fromFolder, name, &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno;
    }
    if (S_ISDIR(found.st_mode)) {
        struct stat taken {};
        if (fstatat(toFolder, newName, &taken, AT_SYMLINK_NOFOLLOW) == 0) {
            return EEXIST;
        }
        return errno != ENOENT || renameat(fromFolder, name, toFolder, newName) != 0 ? errno : 0;
    }
    if (linkat(fromFolder, name, toFolder, newName, 0) != 0) {
        return errno;
    }
    if (unlinkat(fromFolder, name, 0) != 0) {
        const int failure = errno;
        unlinkat(toFolder, newName, 0);
        return failure;
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
    const int failure = renameExclusively(fromFolder, name, toFolder, newName);
    return failure == ENOTSUP ? moveInTwoSteps(fromFolder, name, toFolder, newName) : failure;
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

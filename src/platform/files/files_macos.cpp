#include <fcntl.h>
#include <stdio.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files/files.h"
#include "platform/files/files_system.h"

namespace vesk {

namespace {

std::optional<VolumeIdentity> volumeIdentityOf(const struct statfs& found) {
    const auto half = [](int value) { return static_cast<std::uint64_t>(static_cast<std::uint32_t>(value)); };
    return VolumeIdentity{0, (half(found.f_fsid.val[0]) << 32U) | half(found.f_fsid.val[1])};
}

}  // namespace

std::optional<FolderIdentity> folderIdentityAt(int folder, const char* path) {
    struct stat found {};
    const int failed = *path == '\0' ? fstat(folder, &found) : fstatat(folder, path, &found, 0);
    if (failed != 0 || !S_ISDIR(found.st_mode)) {
        return std::nullopt;
    }
    FolderIdentity identity;
    identity.device = static_cast<std::uint32_t>(found.st_dev);
    identity.inode = found.st_ino;
    identity.made = dateFromUnix(found.st_birthtimespec.tv_sec, found.st_birthtimespec.tv_nsec);
    return identity;
}

// The thread of a scan has asked to leave access dates alone, whatever it does (folder_reader_macos.cpp).
bool followWithoutTrace(const std::filesystem::path& /*link*/, std::optional<std::filesystem::path>& /*target*/) {
    return false;
}

bool isMountPoint(const std::filesystem::path& folder) {
    struct stat found {};
    struct stat above {};
    return lstat(folder.c_str(), &found) == 0 && stat(folder.parent_path().c_str(), &above) == 0 &&
           found.st_dev != above.st_dev;
}

std::optional<VolumeIdentity> volumeIdentity(int folder) {
    struct statfs found {};
    return fstatfs(folder, &found) == 0 ? volumeIdentityOf(found) : std::nullopt;
}

std::optional<VolumeIdentity> volumeIdentity(const std::filesystem::path& item) {
    struct statfs found {};
    return statfs(item.c_str(), &found) == 0 ? volumeIdentityOf(found) : std::nullopt;
}

int renameExclusively(int fromFolder, const char* name, int toFolder, const char* newName) {
    return renameatx_np(fromFolder, name, toFolder, newName, RENAME_EXCL) == 0 ? 0 : errno;
}

}  // namespace vesk

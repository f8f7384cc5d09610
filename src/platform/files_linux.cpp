#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files.h"
#include "platform/files_system.h"

namespace vesk {

namespace {

std::uint64_t deviceOf(const struct statx& found) {
    return (std::uint64_t{found.stx_dev_major} << 32U) | found.stx_dev_minor;
}

std::optional<VolumeIdentity> volumeIdentityAt(int folder, const char* path, int flags) {
    struct statx found {};
    if (statx(folder, path, flags | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT, STATX_MNT_ID, &found) != 0) {
        return std::nullopt;
    }
    // Before Linux 5.8 the device has to do; a folder mounted twice is told apart only by the rename that fails.
    return VolumeIdentity{(found.stx_mask & STATX_MNT_ID) != 0 ? found.stx_mnt_id : 0, deviceOf(found)};
}

}  // namespace

std::optional<FolderIdentity> folderIdentityAt(int folder, const char* path) {
    struct statx found {};
    const int flags = (*path == '\0' ? AT_EMPTY_PATH : 0) | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
    if (statx(folder, path, flags, STATX_TYPE | STATX_INO | STATX_BTIME, &found) != 0 || !S_ISDIR(found.stx_mode)) {
        return std::nullopt;
    }
    FolderIdentity identity;
    identity.device = deviceOf(found);
    identity.inode = found.stx_ino;
    if ((found.stx_mask & STATX_BTIME) != 0) {
        identity.made = dateFromUnix(found.stx_btime.tv_sec, found.stx_btime.tv_nsec);
    }
    return identity;
}

std::optional<VolumeIdentity> volumeIdentity(int folder) {
    return volumeIdentityAt(folder, "", AT_EMPTY_PATH);
}

std::optional<VolumeIdentity> volumeIdentity(const std::filesystem::path& item) {
    return volumeIdentityAt(AT_FDCWD, item.c_str(), 0);
}

int renameExclusively(int fromFolder, const char* name, int toFolder, const char* newName) {
    if (syscall(SYS_renameat2, fromFolder, name, toFolder, newName, RENAME_NOREPLACE) == 0) {
        return 0;
    }
    return errno == EINVAL || errno == ENOSYS ? ENOTSUP : errno;
}

}  // namespace vesk

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/files/identity.h"
#include "platform/files/identity_system.h"

namespace vesk {

namespace {

// The file systems that are known to keep the inode numbers of files for as long as the files exist. Of others it is
// not assumed: FAT and most of FUSE number files anew at each mount. Some of the numbers are missing in
// <linux/magic.h>.
constexpr std::uint32_t bcachefsMagic = 0xca451a4e;
constexpr std::uint32_t jfsMagic = 0x3153464a;
constexpr std::uint32_t zfsMagic = 0x2fc12fc1;
constexpr std::array<std::uint32_t, 11> keepingInodeNumbers = {
    BTRFS_SUPER_MAGIC, ECRYPTFS_SUPER_MAGIC, EXT4_SUPER_MAGIC, F2FS_SUPER_MAGIC, NFS_SUPER_MAGIC,  TMPFS_MAGIC,
    XFS_SUPER_MAGIC,   bcachefsMagic,        jfsMagic,         zfsMagic,         NILFS_SUPER_MAGIC};

FileType typeOf(unsigned mode) {
    return S_ISREG(mode)   ? FileType::file
           : S_ISDIR(mode) ? FileType::folder
           : S_ISLNK(mode) ? FileType::link
                           : FileType::other;
}

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

std::optional<ItemIdentity> identityAt(int folder, const char* name, int flags) {
    struct statx found {};
    if (statx(folder, name, flags | AT_NO_AUTOMOUNT, STATX_TYPE | STATX_INO | STATX_BTIME, &found) != 0) {
        return std::nullopt;
    }
    ItemIdentity identity;
    identity.type = typeOf(found.stx_mode);
    identity.device = deviceOf(found);
    identity.inode = found.stx_ino;
    if ((found.stx_mask & STATX_BTIME) != 0) {
        identity.made = dateFromUnix(found.stx_btime.tv_sec, found.stx_btime.tv_nsec);
    }
    return identity;
}

std::optional<ItemIdentity> ifFolder(const std::optional<ItemIdentity>& found) {
    return found && found->type == FileType::folder ? found : std::nullopt;
}

bool keepsInodeNumbers(const struct statfs& found) {
    return std::find(keepingInodeNumbers.begin(), keepingInodeNumbers.end(),
                     static_cast<std::uint32_t>(found.f_type)) != keepingInodeNumbers.end();
}

Date dateOf(const timespec& time) {
    return dateFromUnix(time.tv_sec, time.tv_nsec);
}

}  // namespace

std::optional<ItemIdentity> itemIdentity(int folder, const char* name) {
    return identityAt(folder, name, AT_SYMLINK_NOFOLLOW);
}

std::optional<ItemIdentity> itemIdentity(int opened) {
    return identityAt(opened, "", AT_EMPTY_PATH);
}

std::optional<ItemIdentity> folderIdentity(const std::filesystem::path& folder) {
    return ifFolder(identityAt(AT_FDCWD, folder.c_str(), AT_STATX_DONT_SYNC));
}

std::optional<ItemIdentity> folderIdentity(int folder) {
    return ifFolder(identityAt(folder, "", AT_EMPTY_PATH | AT_STATX_DONT_SYNC));
}

std::optional<VolumeIdentity> volumeIdentity(int folder) {
    return volumeIdentityAt(folder, "", AT_EMPTY_PATH);
}

std::optional<VolumeIdentity> volumeIdentity(const std::filesystem::path& item) {
    return volumeIdentityAt(AT_FDCWD, item.c_str(), 0);
}

std::optional<Date> contentModificationDate(int opened) {
    struct stat found {};
    return fstat(opened, &found) == 0 ? std::optional(dateOf(found.st_mtim)) : std::nullopt;
}

bool keepsInodeNumbers(int opened) {
    struct statfs found {};
    return fstatfs(opened, &found) == 0 && keepsInodeNumbers(found);
}

bool keepsInodeNumbers(const std::filesystem::path& item) {
    struct statfs found {};
    return statfs(item.c_str(), &found) == 0 && keepsInodeNumbers(found);
}

// The handle by which a file server would find the file again: inode number and generation, on every file system that
// can be exported.
std::string generationOf(int folder, const char* name) {
    alignas(file_handle) std::array<char, sizeof(file_handle) + MAX_HANDLE_SZ> buffer{};
    auto* const handle = reinterpret_cast<file_handle*>(buffer.data());
    handle->handle_bytes = MAX_HANDLE_SZ;
    int mount = 0;
    if (name_to_handle_at(folder, name, handle, &mount, 0) != 0) {
        return {};
    }
    return {buffer.data(), sizeof(file_handle) + handle->handle_bytes};
}

std::optional<std::pair<Date, Date>> datesOfChange(int folder, const char* name) {
    struct stat found {};
    if (fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return std::nullopt;
    }
    return std::pair(dateOf(found.st_mtim), dateOf(found.st_ctim));
}

}  // namespace vesk

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/param.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/files/identity.h"
#include "platform/files/identity_system.h"

namespace vesk {

namespace {

// The file systems that are known to keep the inode numbers of files for as long as the files exist.
constexpr std::array<std::string_view, 3> keepingInodeNumbers = {"apfs", "hfs", "nfs"};

FileType typeOf(mode_t mode) {
    return S_ISREG(mode)   ? FileType::file
           : S_ISDIR(mode) ? FileType::folder
           : S_ISLNK(mode) ? FileType::link
                           : FileType::other;
}

Date dateOf(const timespec& time) {
    return dateFromUnix(time.tv_sec, time.tv_nsec);
}

ItemIdentity identityIn(const struct stat& found) {
    ItemIdentity identity;
    identity.type = typeOf(found.st_mode);
    identity.device = static_cast<std::uint32_t>(found.st_dev);
    identity.inode = found.st_ino;
    identity.made = dateOf(found.st_birthtimespec);
    return identity;
}

std::optional<ItemIdentity> ifFolder(bool isThere, const struct stat& found) {
    return isThere && S_ISDIR(found.st_mode) ? std::optional(identityIn(found)) : std::nullopt;
}

std::optional<VolumeIdentity> volumeIdentityOf(const struct statfs& found) {
    const auto half = [](int value) { return static_cast<std::uint64_t>(static_cast<std::uint32_t>(value)); };
    return VolumeIdentity{0, (half(found.f_fsid.val[0]) << 32U) | half(found.f_fsid.val[1])};
}

bool keepsInodeNumbers(const struct statfs& found) {
    return std::find(keepingInodeNumbers.begin(), keepingInodeNumbers.end(), std::string_view(found.f_fstypename)) !=
           keepingInodeNumbers.end();
}

}  // namespace

std::optional<ItemIdentity> itemIdentity(int folder, const char* name) {
    struct stat found {};
    return fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) == 0 ? std::optional(identityIn(found)) : std::nullopt;
}

std::optional<ItemIdentity> itemIdentity(int opened) {
    struct stat found {};
    return fstat(opened, &found) == 0 ? std::optional(identityIn(found)) : std::nullopt;
}

std::optional<ItemIdentity> folderIdentity(const std::filesystem::path& folder) {
    struct stat found {};
    return ifFolder(stat(folder.c_str(), &found) == 0, found);
}

std::optional<ItemIdentity> folderIdentity(int folder) {
    struct stat found {};
    return ifFolder(fstat(folder, &found) == 0, found);
}

std::optional<VolumeIdentity> volumeIdentity(int folder) {
    struct statfs found {};
    return fstatfs(folder, &found) == 0 ? volumeIdentityOf(found) : std::nullopt;
}

std::optional<VolumeIdentity> volumeIdentity(const std::filesystem::path& item) {
    struct statfs found {};
    return statfs(item.c_str(), &found) == 0 ? volumeIdentityOf(found) : std::nullopt;
}

std::optional<Date> contentModificationDate(int opened) {
    struct stat found {};
    return fstat(opened, &found) == 0 ? std::optional(dateOf(found.st_mtimespec)) : std::nullopt;
}

bool keepsInodeNumbers(int opened) {
    struct statfs found {};
    return fstatfs(opened, &found) == 0 && keepsInodeNumbers(found);
}

bool keepsInodeNumbers(const std::filesystem::path& item) {
    struct statfs found {};
    return statfs(item.c_str(), &found) == 0 && keepsInodeNumbers(found);
}

// Only the superuser is told; for others it is 0.
std::string generationOf(int folder, const char* name) {
    struct stat found {};
    return fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) == 0 ? std::to_string(found.st_gen) : std::string();
}

std::optional<std::pair<Date, Date>> datesOfChange(int folder, const char* name) {
    struct stat found {};
    if (fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return std::nullopt;
    }
    return std::pair(dateOf(found.st_mtimespec), dateOf(found.st_ctimespec));
}

}  // namespace vesk

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/param.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/files/item_identity_system.h"

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

ItemIdentity identityIn(const struct stat& found) {
    ItemIdentity identity;
    identity.type = typeOf(found.st_mode);
    identity.device = static_cast<std::uint32_t>(found.st_dev);
    identity.inode = found.st_ino;
    identity.made = dateFromUnix(found.st_birthtimespec.tv_sec, found.st_birthtimespec.tv_nsec);
    return identity;
}

bool keepsInodeNumbers(const struct statfs& found) {
    return std::find(keepingInodeNumbers.begin(), keepingInodeNumbers.end(), std::string_view(found.f_fstypename)) !=
           keepingInodeNumbers.end();
}

bool isSameTime(const timespec& first, const timespec& second) {
    return first.tv_sec == second.tv_sec && first.tv_nsec == second.tv_nsec;
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

std::optional<Date> contentModificationDate(int opened) {
    struct stat found {};
    return fstat(opened, &found) == 0
               ? std::optional(dateFromUnix(found.st_mtimespec.tv_sec, found.st_mtimespec.tv_nsec))
               : std::nullopt;
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

bool haveSameDates(const struct stat& first, const struct stat& second) {
    return isSameTime(first.st_mtimespec, second.st_mtimespec) && isSameTime(first.st_ctimespec, second.st_ctimespec);
}

}  // namespace vesk

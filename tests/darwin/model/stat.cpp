// Darwin's stat(2) and statfs(2), filled from statx(2) and statfs(2) of this machine.

#include <fcntl.h>
#include <linux/stat.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace {

// The plain one, before Darwin's takes its name.
int plainStatfs(const char* path, int descriptor, struct statfs& found) {
    return path != nullptr ? statfs(path, &found) : fstatfs(descriptor, &found);
}

using PlainStatfs = struct statfs;

}  // namespace

#include "darwin/include/sys/mount.h"
#include "darwin/include/sys/stat.h"

namespace {

timespec darwinTime(const statx_timestamp& time) {
    return timespec{time.tv_sec, static_cast<long>(time.tv_nsec)};
}

int fill(int folder, const char* path, int flags, struct darwin_stat* to) {
    struct statx found {};
    if (syscall(SYS_statx, folder, path, flags, STATX_BASIC_STATS | STATX_BTIME, &found) != 0) {
        return -1;
    }
    *to = {};
    to->st_dev = static_cast<std::int32_t>((found.stx_dev_major << 24U) | found.stx_dev_minor);
    to->st_mode = found.stx_mode;
    to->st_nlink = static_cast<std::uint16_t>(found.stx_nlink);
    to->st_ino = found.stx_ino;
    to->st_uid = found.stx_uid;
    to->st_atimespec = darwinTime(found.stx_atime);
    to->st_mtimespec = darwinTime(found.stx_mtime);
    to->st_ctimespec = darwinTime(found.stx_ctime);
    to->st_birthtimespec = darwinTime(found.stx_btime);
    to->st_size = static_cast<off_t>(found.stx_size);
    to->st_blocks = static_cast<std::int64_t>(found.stx_blocks);
    return 0;
}

int fillSystem(const char* path, int descriptor, struct darwin_statfs* to) {
    PlainStatfs found{};
    if (plainStatfs(path, descriptor, found) != 0) {
        return -1;
    }
    *to = {};
    std::memcpy(&to->f_fsid, &found.f_fsid, sizeof to->f_fsid);
    constexpr auto withoutAccessTimes = 0x0400;  // ST_NOATIME of statvfs(3)
    to->f_flags = (found.f_flags & withoutAccessTimes) != 0 ? MNT_NOATIME : 0;
    std::strcpy(to->f_fstypename, "apfs");
    return 0;
}

}  // namespace

extern "C" {

int darwin_stat(const char* path, struct darwin_stat* found) {
    return fill(AT_FDCWD, path, 0, found);
}

int darwin_lstat(const char* path, struct darwin_stat* found) {
    return fill(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW, found);
}

int darwin_fstat(int descriptor, struct darwin_stat* found) {
    return fill(descriptor, "", AT_EMPTY_PATH, found);
}

int darwin_fstatat(int folder, const char* path, struct darwin_stat* found, int flags) {
    return fill(folder, path, flags, found);
}

int darwin_statfs(const char* path, struct darwin_statfs* found) {
    return fillSystem(path, -1, found);
}

int darwin_fstatfs(int descriptor, struct darwin_statfs* found) {
    return fillSystem(nullptr, descriptor, found);
}

}  // extern "C"

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/mount.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstring>
#include <string>

#include "platform/files/content.h"
#include "platform/files/descriptor.h"
#include "platform/files/files.h"
#include "platform/files/files_system.h"

namespace vesk {

namespace {

// What a child process of this one finds, with every mount read-only: there the kernel sets no access date. Between
// fork and exit it may make plain system calls alone, since other threads may have held locks. Writes the path that the
// link leads to into the pipe, or an empty one; ends with 0 when that is the truth.
[[noreturn]] void followAmongReadOnlyMounts(const char* link, int pipe) {
    mount_attr readOnly{};
    readOnly.attr_set = MOUNT_ATTR_RDONLY;
    const bool apart = unshare(CLONE_NEWNS) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0;
    if (!apart || prctl(PR_SET_PDEATHSIG, SIGKILL) != 0 ||
        syscall(SYS_mount_setattr, -1, "/", AT_RECURSIVE, &readOnly, sizeof readOnly) != 0) {
        _exit(1);
    }
    const int target = open(link, O_PATH | O_CLOEXEC);
    if (target < 0) {
        _exit(errno == EMFILE || errno == ENFILE ? 1 : 0);
    }
    std::array<char, 32> opened{"/proc/self/fd/"};
    std::to_chars(opened.data() + std::strlen(opened.data()), opened.data() + opened.size() - 1, target);
    std::array<char, PATH_MAX> path;
    const ssize_t length = readlink(opened.data(), path.data(), path.size());
    _exit(length > 0 && write(pipe, path.data(), static_cast<std::size_t>(length)) == length ? 0 : 1);
}

}  // namespace

bool followWithoutTrace(const std::filesystem::path& link, std::optional<std::filesystem::path>& target) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return false;
    }
    const Descriptor reading(ends[0]);
    Descriptor writing(ends[1]);
    const pid_t child = fork();
    if (child == 0) {
        followAmongReadOnlyMounts(link.c_str(), writing.get());
    }
    writing.close();
    std::string path;
    const int unread = readAll(reading.get(), PATH_MAX, path);
    int status = 1;
    while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR) {
        continue;
    }
    if (child < 0 || unread != 0 || status != 0) {
        return false;
    }
    if (!path.empty()) {
        target = path;
    }
    return true;
}

// Before Linux 5.8 none is known for one.
bool isMountPoint(const std::filesystem::path& folder) {
    struct statx found {};
    const int flags = AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
    return statx(AT_FDCWD, folder.c_str(), flags, 0, &found) == 0 &&
           (found.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0;
}

int renameExclusively(int fromFolder, const char* name, int toFolder, const char* newName) {
    if (syscall(SYS_renameat2, fromFolder, name, toFolder, newName, RENAME_NOREPLACE) == 0) {
        return 0;
    }
    return errno == EINVAL || errno == ENOSYS ? ENOTSUP : errno;
}

}  // namespace vesk

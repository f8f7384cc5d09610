#include <fcntl.h>
#include <linux/fs.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files/files.h"
#include "platform/files/files_system.h"

namespace vesk {

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

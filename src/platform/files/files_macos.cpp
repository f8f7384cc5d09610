#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/files/files.h"
#include "platform/files/files_system.h"

namespace vesk {

bool isMountPoint(const std::filesystem::path& folder) {
    struct stat found {};
    struct stat above {};
    return lstat(folder.c_str(), &found) == 0 && stat(folder.parent_path().c_str(), &above) == 0 &&
           found.st_dev != above.st_dev;
}

int renameExclusively(int fromFolder, const char* name, int toFolder, const char* newName) {
    return renameatx_np(fromFolder, name, toFolder, newName, RENAME_EXCL) == 0 ? 0 : errno;
}

}  // namespace vesk

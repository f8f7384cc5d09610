#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

#include "platform/files/syncing.h"

namespace vesk {

// APFS and HFS+ with its journal, the only systems that a home may lie on.
bool keepsOrderOfNames(int /*folder*/) {
    return true;
}

bool syncNames(int folder) {
    // Up to the disk itself; a network's does not know that.
    return fcntl(folder, F_FULLFSYNC) == 0 || fsync(folder) == 0;
}

bool syncNewFiles(const std::vector<int>& files) {
    return std::all_of(files.begin(), files.end(), [](int file) { return fsync(file) == 0; });
}

}  // namespace vesk

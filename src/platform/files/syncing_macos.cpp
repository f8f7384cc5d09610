#include <fcntl.h>
#include <unistd.h>

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

}  // namespace vesk

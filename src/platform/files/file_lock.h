// A lock between programs: a file that one process at a time holds. The system lets go of it when that process ends,
// however it ends, so none is ever left behind. Any thread.
#pragma once

#include <filesystem>

#include "platform/files/descriptor.h"

namespace vesk {

class FileLock {
public:
    enum class State {
        /// This object holds it, for as long as it lives.
        ours,
        /// Another one does.
        anothers,
        /// Nobody can: the file cannot be made, or its file system knows no locks.
        impossible,
    };

    /// Tries to take the lock on `file`, which is made, with the folders above it (mode 0700), when it is missing, and
    /// stays. Waits for nobody.
    State tryTake(const std::filesystem::path& file);

private:
    Descriptor held_;
};

}  // namespace vesk

// A lock between processes, on a file. The system releases it when the process ends, however it ends, so it is never
// stale. Callable from any thread.
#pragma once

#include <filesystem>

#include "platform/files/descriptor.h"

namespace vesk {

class FileLock {
public:
    enum class State {
        /// This object holds the lock, for as long as it lives.
        ours,
        /// Somebody else holds it.
        anothers,
        /// Nobody can hold it: the file cannot be created, or its file system has no locks.
        impossible,
    };

    /// Tries to lock `file` without waiting. Creates the file if it is missing, and its parent folders with mode 0700;
    /// the file is never removed.
    State tryTake(const std::filesystem::path& file);

private:
    Descriptor held_;
};

}  // namespace vesk

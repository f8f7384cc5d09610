// What the window tells the user when a clean has ended. A plain value, created by Store on the main thread.
#pragma once

#include <cstdint>

#include "platform/uuid.h"

namespace vesk {

struct Celebration {
    /// New for each run.
    Uuid id = Uuid::random();
    /// Bytes freed; in a preview, the bytes that would be freed.
    std::int64_t bytes = 0;
    bool preview = false;
    /// Snapshots deleted; 0 in a preview.
    std::int64_t snapshots = 0;
    /// Items that could not be moved plus snapshots that could not be deleted; 0 in a preview.
    std::int64_t failures = 0;
};

}  // namespace vesk

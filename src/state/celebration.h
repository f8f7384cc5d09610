// What a cleaning run tells the user when it ends. A plain value, made by Store on the main thread.
#pragma once

#include <cstdint>

#include "platform/uuid.h"

namespace vesk {

struct Celebration {
    /// Fresh for each run.
    Uuid id = Uuid::random();
    /// Bytes freed, or in a preview the bytes that would be.
    std::int64_t bytes = 0;
    bool preview = false;
    /// Snapshots deleted; 0 in a preview.
    std::int64_t snapshots = 0;
    /// Items that could not be moved plus snapshots that could not be deleted; 0 in a preview.
    std::int64_t failures = 0;
};

}  // namespace vesk

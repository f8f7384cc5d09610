// The figures of the start-up volume.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace vesk {

struct VolumeFigures {
    /// Total capacity in bytes; absent when it cannot be read.
    std::optional<std::int64_t> totalCapacity;
    /// Bytes available to this user for important use; absent when it cannot be read.
    std::optional<std::int64_t> availableCapacity;
};

/// Reads the figures of the volume that holds `path`. Callable from any thread; does not read the disk.
VolumeFigures readVolumeFigures(const std::filesystem::path& path);

}  // namespace vesk

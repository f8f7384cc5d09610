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

/// Of which items the file system that holds `path` keeps the dates of last use up to date.
struct UseDatesKept {
    bool ofFiles = true;
    bool ofFolders = true;
};
UseDatesKept useDatesKept(const std::filesystem::path& path);

/// Reads the figures of the volume that holds `path`. Callable from any thread; does not read the disk.
VolumeFigures readVolumeFigures(const std::filesystem::path& path);

}  // namespace vesk

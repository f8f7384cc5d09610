// A volume's capacity and free space.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace vesk {

struct VolumeFigures {
    /// Total capacity in bytes; absent if it cannot be read.
    std::optional<std::int64_t> totalCapacity;
    /// Bytes available to this user (on macOS, for important use); absent if it cannot be read.
    std::optional<std::int64_t> availableCapacity;
};

/// For which items the file system that holds `path` keeps access dates up to date.
struct UseDatesKept {
    bool ofFiles = true;
    bool ofFolders = true;
};
UseDatesKept useDatesKept(const std::filesystem::path& path);

/// Reads the figures of the volume that holds `path`. Callable from any thread.
VolumeFigures readVolumeFigures(const std::filesystem::path& path);

}  // namespace vesk

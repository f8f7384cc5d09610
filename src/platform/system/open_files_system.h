// The system-specific part of open_files.cpp (open_files_linux.cpp, open_files_macos.cpp).
#pragma once

#include <cstdint>

namespace vesk {

/// Where the file at a path is; a link at its end is not followed. False if there is none.
struct FilePlace {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t mount = 0;
    bool isFolder = false;
    /// Whether all that lies in it, except for mounts, is on its device. On btrfs a subvolume is not.
    bool isOneDevice = false;
};
bool findPlace(const char* path, FilePlace& place);

}  // namespace vesk

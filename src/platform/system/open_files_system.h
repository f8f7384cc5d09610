// What open_files.cpp needs and each system has in its own way (open_files_linux.cpp, open_files_macos.cpp).
#pragma once

#include <cstdint>

namespace vesk {

/// What a look at a path tells of the file there, a link at its end not followed; false when there is none.
struct FilePlace {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::uint64_t mount = 0;
    bool isFolder = false;
};
bool findPlace(const char* path, FilePlace& place);

}  // namespace vesk

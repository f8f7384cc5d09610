// Events of the file system come too late here, and do not tell of opening.

#include "platform/system/open_watch.h"

namespace vesk {

class OpenWatch::Items {};

OpenWatch::OpenWatch() = default;
OpenWatch::~OpenWatch() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): on Linux, another thread keeps them
void OpenWatch::prepare(std::vector<std::string> /*items*/) {
}

std::chrono::steady_clock::time_point OpenWatch::begin() {
    return std::chrono::steady_clock::now();
}

bool OpenWatch::noticed(const std::filesystem::path& /*item*/) {
    return false;
}

}  // namespace vesk

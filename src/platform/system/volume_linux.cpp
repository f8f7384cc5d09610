#include <sys/statvfs.h>

#include "platform/system/volume.h"

namespace vesk {

VolumeFigures readVolumeFigures(const std::filesystem::path& path) {
    struct statvfs found {};
    if (statvfs(path.c_str(), &found) != 0) {
        return {};
    }
    const auto bytes = [&](auto blocks) { return static_cast<std::int64_t>(blocks * found.f_frsize); };
    return VolumeFigures{bytes(found.f_blocks), bytes(found.f_bavail)};
}

}  // namespace vesk

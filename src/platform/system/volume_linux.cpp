#include <sys/statvfs.h>

#include "platform/system/volume.h"

namespace vesk {

UseDatesKept useDatesKept(const std::filesystem::path& path) {
    struct statvfs found {};
    if (statvfs(path.c_str(), &found) != 0) {
        return {};
    }
    const bool ofFiles = (found.f_flag & ST_NOATIME) == 0;
    return {ofFiles, ofFiles && (found.f_flag & ST_NODIRATIME) == 0};
}

VolumeFigures readVolumeFigures(const std::filesystem::path& path) {
    struct statvfs found {};
    if (statvfs(path.c_str(), &found) != 0) {
        return {};
    }
    const auto bytes = [&](auto blocks) { return static_cast<std::int64_t>(blocks * found.f_frsize); };
    return VolumeFigures{bytes(found.f_blocks), bytes(found.f_bavail)};
}

}  // namespace vesk

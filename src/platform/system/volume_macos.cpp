#include <sys/mount.h>
#include <sys/param.h>

#include "platform/system/core_foundation.h"
#include "platform/system/volume.h"

namespace vesk {

namespace {

std::optional<std::int64_t> figure(CFURLRef place, CFStringRef key) {
    CFTypeRef copied = nullptr;
    if (!CFURLCopyResourcePropertyForKey(place, key, static_cast<void*>(&copied), nullptr)) {
        return std::nullopt;
    }
    // A figure that the volume does not have is read without failure, as no object at all.
    const Owned<CFTypeRef> value(copied);
    std::int64_t number = 0;
    if (!value || CFGetTypeID(value.get()) != CFNumberGetTypeID() ||
        !CFNumberGetValue(static_cast<CFNumberRef>(value.get()), kCFNumberSInt64Type, &number)) {
        return std::nullopt;
    }
    return number;
}

}  // namespace

UseDatesKept useDatesKept(const std::filesystem::path& path) {
    struct statfs found {};
    const bool kept = statfs(path.c_str(), &found) != 0 || (found.f_flags & MNT_NOATIME) == 0;
    return {kept, kept};
}

VolumeFigures readVolumeFigures(const std::filesystem::path& path) {
    const Owned<CFURLRef> place = makeFolderPlace(path);
    if (!place) {
        return {};
    }
    // Available for important use: what the system would clear for the user counts as free, unlike in statvfs(3).
    return VolumeFigures{figure(place.get(), kCFURLVolumeTotalCapacityKey),
                         figure(place.get(), kCFURLVolumeAvailableCapacityForImportantUsageKey)};
}

}  // namespace vesk

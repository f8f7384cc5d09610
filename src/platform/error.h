// A failure reported by the operating system, as a value. Created by this layer, classified by Probe::isPermission;
// safe to copy between threads.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vesk {

/// The domain of errno values.
inline constexpr std::string_view posixErrorDomain = "NSPOSIXErrorDomain";
/// The domain of the macOS frameworks' codes.
inline constexpr std::string_view cocoaErrorDomain = "NSCocoaErrorDomain";

struct PlatformError {
    std::string domain;
    std::int64_t code = 0;
    /// The failure that caused this one; null if there is none.
    std::shared_ptr<const PlatformError> underlying;
};

/// The error of an errno value.
PlatformError posixError(int number);

}  // namespace vesk

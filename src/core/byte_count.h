// Formats sizes for people.
#pragma once

#include <cstdint>
#include <string>

namespace vesk {

/// Formats a number of bytes in decimal units, with the few digits that file managers show: "Zero KB", "1 byte", "999
/// bytes", "226 KB", "12.3 MB", "1.23 GB". Ties round to the even digit. Callable from any thread.
std::string byteCountText(std::int64_t bytes);

}  // namespace vesk

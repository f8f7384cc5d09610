// The bytes of open files and pipes. Callable from any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vesk {

/// Appends to `bytes` what an open file or pipe holds, to its end. Returns 0, EFBIG when there is more than `atMost`
/// bytes (those have been appended), or the errno value of the failure.
int readAll(int file, std::size_t atMost, std::string& bytes);

/// Writes all the bytes to an open file. Returns 0, or the errno value of the failure.
int writeAll(int file, std::string_view bytes);

}  // namespace vesk

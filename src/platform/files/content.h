// Reads and writes open files and pipes. Callable from any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vesk {

/// Appends the rest of an open file or pipe to `bytes`. Returns 0; EFBIG if there are more than `atMost` bytes, of
/// which that many have been appended; or another errno value.
int readAll(int file, std::size_t atMost, std::string& bytes);

/// Writes all bytes to an open file. Returns 0, or an errno value.
int writeAll(int file, std::string_view bytes);

}  // namespace vesk

// Reading small files of other programs. Callable from any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace vesk {

/// The bytes of a regular file, a link at the end of the path followed, without setting its access date where the
/// system allows that. Absent when it cannot be read or is larger than `most` bytes. A FIFO or a device does not hold
/// the reader up.
std::optional<std::string> readWithoutTrace(const std::filesystem::path& path, std::int64_t most);

}  // namespace vesk

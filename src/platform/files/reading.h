// Reads small files of other programs. Callable from any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace vesk {

/// The bytes of a regular file, read without setting its access date if the system allows that. Follows links. Absent
/// if it cannot be read or is larger than `most` bytes. Does not block on a FIFO or a device.
std::optional<std::string> readWithoutTrace(const std::filesystem::path& path, std::int64_t most);

}  // namespace vesk

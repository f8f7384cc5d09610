// What files.cpp and moving.cpp need and each system has in its own way (files_linux.cpp, files_macos.cpp).
#pragma once

#include <filesystem>
#include <optional>

namespace vesk {

/// Finds where a link leads, all links resolved, without setting the access date of any: `target` is absent when it
/// leads nowhere. Returns false, and tells nothing, where the system has no such way.
bool followWithoutTrace(const std::filesystem::path& link, std::optional<std::filesystem::path>& target);

/// Renames unless something has the new name (EEXIST). Returns 0 or an errno value; ENOTSUP when the file system (or
/// the kernel) does not know this kind of rename, or the move makes no sense.
int renameExclusively(int fromFolder, const char* name, int toFolder, const char* newName);

}  // namespace vesk

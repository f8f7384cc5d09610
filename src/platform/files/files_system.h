// What differs between systems for files.cpp and moving.cpp.
#pragma once

#include <filesystem>
#include <optional>

namespace vesk {

/// Finds where a link leads, all links resolved, without changing their access dates; leaves `target` absent if it
/// leads nowhere. Returns false, with `target` unset, if the system has no way to do that.
bool followWithoutTrace(const std::filesystem::path& link, std::optional<std::filesystem::path>& target);

/// Renames unless the new name is taken (EEXIST). Returns 0 or an errno value; ENOTSUP if the file system or the kernel
/// does not support this kind of rename, or the move is invalid.
int renameExclusively(int fromFolder, const char* name, int toFolder, const char* newName);

}  // namespace vesk

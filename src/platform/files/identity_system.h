// What differs between systems for identity.cpp (identity_linux.cpp, identity_macos.cpp).
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "platform/files/identity.h"

struct stat;

namespace vesk {

/// Whether two stat results are of one item, as far as that can be told without the creation time.
bool isSameFile(const struct stat& first, const struct stat& second);

/// Whether the file system of an open item, or of the item at a path, keeps inode numbers.
bool keepsInodeNumbers(int opened);
bool keepsInodeNumbers(const std::filesystem::path& item);

/// What distinguishes files that have had the same inode number, as bytes; empty if there is no such thing.
std::string generationOf(int folder, const char* name);

/// When an item's content, and when anything about it, last changed; absent if that cannot be determined.
std::optional<std::pair<Date, Date>> datesOfChange(int folder, const char* name);

}  // namespace vesk

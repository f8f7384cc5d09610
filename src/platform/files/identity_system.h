// What identity.cpp needs and each system has in its own way (identity_linux.cpp, identity_macos.cpp).
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "platform/files/identity.h"

struct stat;

namespace vesk {

/// Whether two looks have met one item, as far as a look without the date of its making can tell.
bool isSameFile(const struct stat& first, const struct stat& second);

/// Whether the file system that something open, or what a path leads to, lies on keeps the inode numbers of files.
bool keepsInodeNumbers(int opened);
bool keepsInodeNumbers(const std::filesystem::path& item);

/// What tells apart two files that have had the same inode number, as bytes; empty where there is no such thing.
std::string generationOf(int folder, const char* name);

/// When the content of an item, and when anything about it, was last changed; absent when that cannot be told.
std::optional<std::pair<Date, Date>> datesOfChange(int folder, const char* name);

}  // namespace vesk

// The environment variables by which users move other programs' folders. For world.cpp and rules; pure functions.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vesk {

/// The folders that these variables name, by variable; npm's once for each spelling that is set. `environment` consists
/// of "NAME=VALUE" texts and a null pointer, like `environ`. A leading "~/" stands for `home`. Empty and relative
/// values are ignored.
std::multimap<std::string, std::filesystem::path> variableFolders(const char* const* environment,
                                                                  const std::filesystem::path& home);

/// A folder that a program's setting names: absolute, or below `home` after a leading "~/"; empty for any other text.
std::filesystem::path folderOfSetting(std::string_view value, const std::filesystem::path& home);

/// The absolute path without ".", ".." and a trailing slash.
std::filesystem::path plainFolder(const std::filesystem::path& folder);

}  // namespace vesk

// The variables of the environment by which people move folders of other programs. This is the one place that reads
// them.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vesk {

/// The folders that such variables name, by variable; npm's once for each spelling that is set. `environment` holds
/// "NAME=VALUE" texts and ends with a null pointer, as `environ` does. A leading "~/" stands for `home`. Empty and
/// relative values name nothing.
std::multimap<std::string, std::filesystem::path> variableFolders(const char* const* environment,
                                                                  const std::filesystem::path& home);

/// A folder that a program's setting names: absolute, or below `home` after a leading "~/"; empty for any other text.
std::filesystem::path folderOfSetting(std::string_view value, const std::filesystem::path& home);

/// An absolute path without ".", ".." and a slash at its end.
std::filesystem::path plainFolder(const std::filesystem::path& folder);

}  // namespace vesk

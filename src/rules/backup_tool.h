// The path of the system's backup tool, which lists local snapshots for a rule and deletes them for a clean.
#pragma once

#include <string_view>

namespace vesk {

inline constexpr std::string_view backupTool = "/usr/bin/tmutil";

}  // namespace vesk

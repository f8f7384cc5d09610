// Parses key files, in which programs on Linux desktops keep settings: lines "key=value" in groups "[Group]" (Desktop
// Entry Specification 1.5, "Basic format of the file"). Pure functions, callable from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {

struct KeyFileLine {
    /// Without its brackets.
    std::string group;
    std::string key;
    std::string value;
};

/// The lines of a key file, without blanks around each part. Skips all other lines.
std::vector<KeyFileLine> keyFileLines(std::string_view text);

/// The value of the first line with this key in this group; absent if there is none.
std::optional<std::string> keyFileValue(std::string_view text, std::string_view group, std::string_view key);

}  // namespace vesk

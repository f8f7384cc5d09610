// The files of lines "key=value" in groups "[Group]" in which programs of Linux desktops keep settings (Desktop Entry
// Specification 1.5, "Basic format of the file"). Pure functions, callable from any thread.
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

/// The lines of such a file, without the blanks around each part. What is no such line is passed over.
std::vector<KeyFileLine> keyFileLines(std::string_view text);

/// The value of the first line with this key in this group; absent when there is none.
std::optional<std::string> keyFileValue(std::string_view text, std::string_view group, std::string_view key);

}  // namespace vesk

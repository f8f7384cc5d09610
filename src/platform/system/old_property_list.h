// Property lists in the text form that preceded XML: { key = value; ... }. Used by bundle.cpp; callable from any
// thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// The string value of a key in the list's top dictionary, in UTF-8; the dictionary's braces may be missing. Absent if
/// there is no such key, its value is not a string, or the bytes up to it are malformed. Reads UTF-8, or the encoding
/// that a byte order mark indicates.
std::optional<std::string> textInOldPropertyList(std::string_view bytes, std::string_view key);

}  // namespace vesk

// Property lists in the text form that is older than XML: { key = value; ... }. Callable from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// The text that a key of the list's top dictionary has, as UTF-8; the dictionary's braces may be missing. Absent when
/// there is no such key, its value is no text, or the bytes up to there are no such list. Bytes are read as UTF-8, or
/// as what a byte order mark at their start says.
std::optional<std::string> textInOldPropertyList(std::string_view bytes, std::string_view key);

}  // namespace vesk

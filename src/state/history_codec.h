// The history as the bytes that the preferences keep. docs/history-format.md describes them.
// Pure functions, called by Store on the main thread; neither throws.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "state/history_entry.h"

namespace vesk {

/// The entries as compact JSON in UTF-8. Bytes of a title or path that are not UTF-8 are written as U+FFFD, so that
/// one odd name never costs the whole history.
std::string encodeHistory(const std::vector<HistoryEntry>& entries);

/// Reads what `encodeHistory` writes, with keys in any order; keys that are not known are passed over. Absent when
/// anything else is wrong: no half-understood entry may ever be undone.
std::optional<std::vector<HistoryEntry>> decodeHistory(std::string_view bytes);

}  // namespace vesk

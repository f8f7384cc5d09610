// Converts the history to and from the bytes that the preferences store (docs/history-format.md). For History. Pure
// functions, callable from any thread; neither throws.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "state/history_entry.h"

namespace vesk {

/// The most memory that the entries of a history may take, in bytes. Fifty runs of twenty thousand moves each take a
/// fifth of this. Everything that Vesk can store takes less.
inline constexpr std::size_t largestHistoryInMemory = std::size_t{1} << 30U;

/// The entries as compact JSON in UTF-8. Bytes of a title or path that are not valid UTF-8 become U+FFFD, so that one
/// odd name does not make the whole history unreadable. Takes linear time.
std::string encodeHistory(const std::vector<HistoryEntry>& entries);

/// Decodes what `encodeHistory` writes. Keys may come in any order; unknown keys are ignored. Absent if anything else
/// is wrong or the entries would take more than `most` bytes: a half-understood entry must never be undone. Takes
/// linear time.
std::optional<std::vector<HistoryEntry>> decodeHistory(std::string text, std::size_t most = largestHistoryInMemory);

}  // namespace vesk

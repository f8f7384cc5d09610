// The history as the bytes that the preferences keep. docs/history-format.md describes them.
// Pure functions, callable from any thread; neither throws.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "state/history_entry.h"

namespace vesk {

/// The most that the entries of a history may take in memory, in bytes. Fifty runs of twenty thousand moves each take a
/// fifth of it, and whatever fits into a value of the preferences less than all.
inline constexpr std::size_t largestHistoryInMemory = std::size_t{1} << 30U;

/// The entries as compact JSON in UTF-8. Bytes of a title or path that are not UTF-8 are written as U+FFFD, so that
/// one odd name never costs the whole history. The time grows with the length alone.
std::string encodeHistory(const std::vector<HistoryEntry>& entries);

/// Reads what `encodeHistory` writes, with keys in any order; keys that are not known are passed over. Absent when
/// anything else is wrong, or when the entries would take more than `most` bytes: no half-understood entry may ever be
/// undone. The time grows with the length alone.
std::optional<std::vector<HistoryEntry>> decodeHistory(std::string text, std::size_t most = largestHistoryInMemory);

}  // namespace vesk

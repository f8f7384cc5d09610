// Preferences as files: one per key, in a folder that only its owner may read. Each is replaced whole, so that a reader
// finds the old value or the new one. Used by preferences_*.cpp and state/receipts.cpp; callable from any thread.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/system/preferences.h"

namespace vesk {

/// The number of bytes stored under a key; 0 if there are none or the system does not tell.
std::size_t preferenceFileSize(const std::filesystem::path& folder, std::string_view key);

/// Reads the bytes stored under a key.
StoredBytes readPreferenceFile(const std::filesystem::path& folder, std::string_view key);

/// Stores bytes under a key, creating the folder if it is missing. On failure returns false and keeps the old value.
bool writePreferenceFile(const std::filesystem::path& folder, std::string_view key, std::string_view bytes);

/// Removes what is stored under a key.
void removePreferenceFile(const std::filesystem::path& folder, std::string_view key);

/// Removes the temporary files that killed writes left in this folder. A write in progress holds a lock on its file; on
/// a file system without locks, nothing is removed.
void removeUnfinishedPreferenceFiles(const std::filesystem::path& folder);

/// Booleans as stored in such files; absent for any other bytes.
std::optional<bool> booleanFromPreferenceFile(const std::optional<std::string>& stored);
std::string_view preferenceFileText(bool value);

}  // namespace vesk

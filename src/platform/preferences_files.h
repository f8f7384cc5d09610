// Preferences as files: one for each key, in a folder that only its owner may read. Each is replaced whole, so that a
// reader finds the old value or the new one. Used by preferences_*.cpp and state/receipts.cpp; callable from any
// thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/preferences.h"

namespace vesk {

/// The bytes stored under a key.
StoredBytes readPreferenceFile(const std::filesystem::path& folder, std::string_view key);

/// Stores bytes under a key, making the folder when it is missing. Returns false, with the old value kept, on failure.
bool writePreferenceFile(const std::filesystem::path& folder, std::string_view key, std::string_view bytes);

/// Removes what is stored under a key.
void removePreferenceFile(const std::filesystem::path& folder, std::string_view key);

/// Yes and no as such files hold them; absent for any other bytes.
std::optional<bool> booleanFromPreferenceFile(const std::optional<std::string>& stored);
std::string_view preferenceFileText(bool value);

}  // namespace vesk

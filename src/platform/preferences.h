// The user's preferences: a small store of named values that survives the program.
//
// On macOS they are the platform's user defaults, as long as the world in force is the user's own; everywhere else one
// file for each key (preference_files.h). Used by Store on the main thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "platform/preference_files.h"

namespace vesk {

class Preferences {
public:
    /// The preferences of this user: the platform's user defaults, or the folder "vesk" in World::configHome.
    Preferences();
    /// Preferences kept in `folder`, made with mode 0700 when something is first stored.
    explicit Preferences(std::filesystem::path folder);

    /// A stored yes or no; absent when nothing, or something else, is stored under the key.
    std::optional<bool> boolean(std::string_view key) const;
    /// Returns false when the value could not be stored; the old one then stays.
    bool setBoolean(std::string_view key, bool value);

    /// Stored bytes; absent when there are none or they cannot be read.
    std::optional<std::string> data(std::string_view key) const;
    /// Returns false when the value could not be stored; the old one then stays.
    bool setData(std::string_view key, std::string_view bytes);

private:
    // Absent where the system keeps preferences itself.
    std::optional<PreferenceFiles> files_;
};

}  // namespace vesk

// Preferences as files: one for each key in a folder that only its owner may read, each replaced whole, so that a
// reader finds the old value or the new one and never a part. What Preferences uses wherever the system has no store of
// its own, or one that must not be touched (tests, the demo). Used on the main thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

class PreferenceFiles {
public:
    /// Files in `folder`, made with mode 0700 when something is first stored.
    explicit PreferenceFiles(std::filesystem::path folder);

    /// As the functions of the same names in Preferences.
    std::optional<bool> boolean(std::string_view key) const;
    bool setBoolean(std::string_view key, bool value);
    std::optional<std::string> data(std::string_view key) const;
    bool setData(std::string_view key, std::string_view bytes);

private:
    std::filesystem::path folder_;
};

}  // namespace vesk

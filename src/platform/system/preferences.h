// The user's preferences: a small store of named values that survives the program.
//
// On macOS they are the platform's user defaults; on Linux, and in every made-up world, one file for each key in a
// folder that only its owner may read, each replaced whole, so that a reader finds the old value or the new one and
// never a part. Used by Store, and by app/single_instance.cpp for the lock's place; on the main thread.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// What stands under a key. Nothing at all is another thing than a value that could not be read (a disk that fails, a
/// program out of descriptors): that one must not be replaced as if it were not there.
struct StoredBytes {
    std::optional<std::string> bytes;
    /// Whether something is stored that could not be read now.
    bool unreadable = false;
};

class Preferences {
public:
    /// The most bytes that a value may have. A longer one is not stored, and what is longer is no value.
    static constexpr std::size_t largestValue = std::size_t{512} * 1024 * 1024;

    /// The preferences of this user: on Linux, and in a made-up world, the folder "vesk" in World::configHome.
    Preferences();
    /// Preferences kept in `folder`, made with mode 0700 when something is first stored.
    explicit Preferences(std::filesystem::path folder);

    /// The file whose lock says that a program is using these preferences: a second one would write over what the first
    /// has stored. It need not exist.
    std::filesystem::path lockFile() const;

    /// The folder for what is noted of each run beside the history; it need not exist.
    std::filesystem::path receiptsFolder() const { return lockFile().parent_path() / "receipts"; }

    /// A stored yes or no; absent when nothing, or something else, is stored under the key. Of the user defaults, a
    /// number or a text is read as the system reads it: 0 is no, "YES" is yes.
    std::optional<bool> boolean(std::string_view key) const;
    /// Returns false when the value could not be stored; the old one then stays.
    bool setBoolean(std::string_view key, bool value);

    StoredBytes read(std::string_view key) const;
    /// Stored bytes; absent when there are none or they cannot be read.
    std::optional<std::string> data(std::string_view key) const { return read(key).bytes; }
    /// Returns false when the value could not be stored; the old one then stays.
    bool setData(std::string_view key, std::string_view bytes);

    /// Removes what programs of this user have left behind that were killed while they stored a value. Leaves alone
    /// what a program is storing now.
    void removeUnfinished();

private:
    std::filesystem::path folder_;
};

}  // namespace vesk

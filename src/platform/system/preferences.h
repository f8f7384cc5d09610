// The user's preferences: a small persistent key-value store.
//
// On macOS they are the user defaults; on Linux, and in every made-up world, one file per key in a folder that only its
// owner may read, each replaced whole, so that a reader finds the old value or the new one. Used by Store and app/, on
// the main thread, and by History also on others.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// What is stored under a key. No value differs from one that could not be read (a failing disk, no free descriptors),
/// which must not be replaced as if it did not exist.
struct StoredBytes {
    std::optional<std::string> bytes;
    /// Whether a value is stored that could not be read now.
    bool unreadable = false;
};

class Preferences {
public:
    /// The largest size of a value, in bytes. A larger one is not stored, and counts as no value when read.
    static constexpr std::size_t largestValue = std::size_t{512} * 1024 * 1024;

    /// The preferences of this user: on Linux, and in a made-up world, the folder "vesk" in World::configHome.
    Preferences();
    /// Preferences in `folder`, which is created with mode 0700 when something is first stored.
    explicit Preferences(std::filesystem::path folder);

    /// The file whose lock shows that a program is using these preferences; a second one would overwrite what the first
    /// has stored. It need not exist.
    std::filesystem::path lockFile() const;

    /// The folder of the history's receipts; it need not exist.
    std::filesystem::path receiptsFolder() const { return lockFile().parent_path() / "receipts"; }

    /// The file in which a clean notes the records it is creating in the Trash; exists only while one runs.
    std::filesystem::path recordNotes() const { return lockFile().parent_path() / "records-under-way"; }

    /// A stored boolean; absent if nothing, or something else, is stored under the key. In the user defaults,
    /// a number or a text is read as the system reads it: 0 is no, "YES" is yes.
    std::optional<bool> boolean(std::string_view key) const;
    /// Returns false when the value could not be stored; the old one then stays.
    bool setBoolean(std::string_view key, bool value);

    /// How many bytes are stored; 0 if there are none or the system does not tell.
    std::size_t size(std::string_view key) const;
    StoredBytes read(std::string_view key) const;
    /// Stored bytes; absent if there are none or they cannot be read.
    std::optional<std::string> data(std::string_view key) const { return read(key).bytes; }
    /// Returns false when the value could not be stored; the old one then stays.
    bool setData(std::string_view key, std::string_view bytes);

    /// Removes the temporary files of this user's programs that were killed while storing a value. Leaves those in use
    /// alone.
    void removeUnfinished();

private:
    std::filesystem::path folder_;
};

}  // namespace vesk

// Which item a name belongs to, so that another item that takes the name can be told from it. Code that moves, replaces
// or removes something by name checks here first. Nothing here follows a link at the end of a path unless it says so.
//
// An item is given by an open folder and a name in it, or by AT_FDCWD and an absolute path. Callable from any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/date.h"

namespace vesk {

enum class FileType { file, folder, link, other };

/// Distinguishes an item from all others that exist at the same time and, if `made` is present, later.
struct ItemIdentity {
    FileType type = FileType::other;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    /// Creation time, since inode numbers are reused; absent if the file system does not report it.
    std::optional<Date> made;
    friend bool operator==(const ItemIdentity&, const ItemIdentity&) = default;
};

/// The identity of an item; absent, with errno set, if it does not exist or cannot be statted.
std::optional<ItemIdentity> itemIdentity(int folder, const char* name);
/// The same for the item at an absolute path.
std::optional<ItemIdentity> itemIdentity(const std::filesystem::path& item);
/// The same for an open file or folder.
std::optional<ItemIdentity> itemIdentity(int opened);

/// The identity of the folder that a path leads to, links followed; absent if it does not exist or cannot be statted.
std::optional<ItemIdentity> folderIdentity(const std::filesystem::path& folder);
/// The same for an open folder.
std::optional<ItemIdentity> folderIdentity(int folder);

/// The part of an identity that survives a restart, which renumbers devices and, on some file systems (FAT, FUSE),
/// files.
struct LastingIdentity {
    FileType type = FileType::other;
    /// Absent on a file system that does not keep inode numbers.
    std::optional<std::uint64_t> inode;
    std::optional<Date> made;
    friend bool operator==(const LastingIdentity&, const LastingIdentity&) = default;
};

/// The lasting identity of an item; absent if it does not exist or cannot be statted.
std::optional<LastingIdentity> lastingIdentity(int folder, const char* name);
/// The same for an open file, and for the item at an absolute path.
std::optional<LastingIdentity> lastingIdentity(int opened);
std::optional<LastingIdentity> lastingIdentity(const std::filesystem::path& item);

/// What a rename cannot leave: one file system in one mount. One mount may show several file systems (btrfs
/// subvolumes), and one file system may be mounted twice.
struct VolumeIdentity {
    std::uint64_t mount = 0;
    std::uint64_t device = 0;
    friend bool operator==(const VolumeIdentity&, const VolumeIdentity&) = default;
};

/// The volume of an open folder, or of the item that a path leads to; absent, with errno set, if it cannot be
/// determined.
std::optional<VolumeIdentity> volumeIdentity(int folder);
std::optional<VolumeIdentity> volumeIdentity(const std::filesystem::path& item);

/// When the content of an open file last changed; absent if it cannot be determined.
std::optional<Date> contentModificationDate(int opened);

/// Whether nothing known distinguishes the two.
bool mayBeSame(const LastingIdentity& first, const LastingIdentity& second);
/// Whether they are certainly the same: both are complete and equal.
bool areSurelySame(const LastingIdentity& first, const LastingIdentity& second);

/// Whether two names in different folders belong to one file, so that removing one of them loses nothing. Inode numbers
/// do not prove that: on a network disk or a FUSE file system two files may share one, and a link or a second mount
/// shows one name twice. False if in doubt.
bool areTwoNamesOfOneFile(int folder, const char* name, int otherFolder, const char* otherName);

}  // namespace vesk

// Which item has a name, so that another one that takes the name can be told from it. Whoever moves, replaces or
// removes something by its name asks here first. Nothing here follows a link at the end of a path.
//
// An item is named by an open folder and a name in it; AT_FDCWD goes with an absolute path. Callable from any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/date.h"

namespace vesk {

enum class FileType { file, folder, link, other };

/// Tells an item from all others that exist at the same time, or after it when `made` is there.
struct ItemIdentity {
    FileType type = FileType::other;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    /// When the item was made, since inode numbers are used again; absent when the file system does not say.
    std::optional<Date> made;
    friend bool operator==(const ItemIdentity&, const ItemIdentity&) = default;
};

/// The identity of an item; absent, with errno set, when there is none or it may not be looked at.
std::optional<ItemIdentity> itemIdentity(int folder, const char* name);
/// The same of the item at an absolute path.
std::optional<ItemIdentity> itemIdentity(const std::filesystem::path& item);
/// The same of an open file or folder.
std::optional<ItemIdentity> itemIdentity(int opened);

/// The identity of the folder that a path leads to, links followed; absent when there is none or it may not be looked
/// at.
std::optional<ItemIdentity> folderIdentity(const std::filesystem::path& folder);
/// The same of an open folder.
std::optional<ItemIdentity> folderIdentity(int folder);

/// What of an identity still holds after a restart: devices are numbered anew by then, and on some file systems (FAT,
/// FUSE) files are too.
struct LastingIdentity {
    FileType type = FileType::other;
    /// Absent on a file system that does not keep it.
    std::optional<std::uint64_t> inode;
    std::optional<Date> made;
    friend bool operator==(const LastingIdentity&, const LastingIdentity&) = default;
};

/// The lasting identity of an item; absent when there is none or it may not be looked at.
std::optional<LastingIdentity> lastingIdentity(int folder, const char* name);
/// The same of an open file, and of the item at an absolute path.
std::optional<LastingIdentity> lastingIdentity(int opened);
std::optional<LastingIdentity> lastingIdentity(const std::filesystem::path& item);

/// What a rename works within: one file system, mounted once. One mount may show several file systems (btrfs's
/// subvolumes), and one file system may be mounted twice.
struct VolumeIdentity {
    std::uint64_t mount = 0;
    std::uint64_t device = 0;
    friend bool operator==(const VolumeIdentity&, const VolumeIdentity&) = default;
};

/// The volume that an open folder, or the item that a path leads to, lies on; absent, with errno set, when it cannot be
/// told.
std::optional<VolumeIdentity> volumeIdentity(int folder);
std::optional<VolumeIdentity> volumeIdentity(const std::filesystem::path& item);

/// When the content of an open file was last changed; absent when that cannot be told.
std::optional<Date> contentModificationDate(int opened);

/// Whether nothing tells the two apart.
bool mayBeSame(const LastingIdentity& first, const LastingIdentity& second);
/// Whether they are the same for certain: both tell all there is to tell, and it is the same.
bool areSurelySame(const LastingIdentity& first, const LastingIdentity& second);

/// Whether two names in different folders are those of one file, so that it keeps its content when it loses one of
/// them. Inode numbers do not say that: on a network disk or a FUSE file system two files may have the same one, and a
/// link or a second mount shows one name twice. False whenever it cannot be told.
bool areTwoNamesOfOneFile(int folder, const char* name, int otherFolder, const char* otherName);

}  // namespace vesk

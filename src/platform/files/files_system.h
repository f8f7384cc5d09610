// What files*.cpp and the Trash need and each system has in its own way (files_linux.cpp, files_macos.cpp).
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/files/files.h"

namespace vesk {

/// The identity of the folder at a path relative to an open folder, links followed; of the open folder itself when
/// the path is empty.
std::optional<FolderIdentity> folderIdentityAt(int folder, const char* path);

/// Finds where a link leads, all links resolved, without setting the access date of any: `target` is absent when it
/// leads nowhere. Returns false, and tells nothing, where the system has no such way.
bool followWithoutTrace(const std::filesystem::path& link, std::optional<std::filesystem::path>& target);

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

/// Renames unless something has the new name (EEXIST). Returns 0 or an errno value; ENOTSUP when the file system (or
/// the kernel) does not know this kind of rename, or the move makes no sense.
int renameExclusively(int fromFolder, const char* name, int toFolder, const char* newName);

}  // namespace vesk

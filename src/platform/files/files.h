// Files and folders by path: listing, existence, stat. Nothing here follows a link or changes an access time unless it
// says so, and nothing throws. Callable from any thread.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/error.h"
#include "platform/files/resource_values.h"

namespace vesk {

/// One child of a listed folder.
struct FolderItem {
    /// The child's name: bytes, not necessarily UTF-8.
    std::string name;
    /// True for a folder (including a package); false for a file or a link, even one to a folder.
    bool isDirectory = false;
    /// Last change of the content; absent if it could not be read or dates were not requested.
    std::optional<Date> contentModificationDate;
};

struct FolderListing {
    /// The children, including hidden ones, in byte order of their names. Empty if the listing failed.
    std::vector<FolderItem> items;
    /// Why the listing failed; absent if it did not.
    std::optional<PlatformError> error;
};

/// What to list: only names and kinds (no stat of the children), or dates too (one stat per child).
enum class ListingDetail { kinds, dates };

/// Lists the direct children of a folder. Follows a link at the end of the path.
FolderListing listFolder(const std::filesystem::path& folder, ListingDetail detail);

/// Lists a direct subfolder of `parent`, for walks: fails for a link or a mount point.
FolderListing listSubfolder(const std::filesystem::path& parent, const std::string& name, ListingDetail detail);

/// Stats one item, not following a link at the end of the path; absent if that fails.
std::optional<ResourceValues> resourceValues(const std::filesystem::path& item);

/// Whether something exists at the path. Follows links: a dangling link does not exist.
bool itemExists(const std::filesystem::path& item);

/// Where a link leads, all links resolved; absent if it leads nowhere. Leaves the links' access dates unchanged if the
/// system has a way to do that (docs/decisions/following-links.md).
std::optional<std::filesystem::path> followLink(const std::filesystem::path& link);

/// As long as what it returns lives, following one link after another costs little: what it takes is kept.
std::shared_ptr<const void> readyToFollowLinks();

/// The path with all links resolved; absent if it leads nowhere. Changes the links' access dates, so it is not for
/// scans.
std::optional<std::filesystem::path> resolvingLinks(const std::filesystem::path& item);

/// Whether a file system is mounted at this folder; on Linux (5.8 and later) bind mounts count too.
bool isMountPoint(const std::filesystem::path& folder);

}  // namespace vesk

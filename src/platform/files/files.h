// Single files and folders by their paths: listings, existence tests, looks at one item. Nothing here follows a link or
// changes an access time unless it says so, and nothing throws. Callable from any thread.
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
    /// True for a folder (a package too), false for files and for links, also those to a folder.
    bool isDirectory = false;
    /// Last change of the content. Absent when it could not be read, or when the listing was not asked for dates.
    std::optional<Date> contentModificationDate;
};

struct FolderListing {
    /// The children in byte order of their names, hidden ones too. Empty when the listing failed.
    std::vector<FolderItem> items;
    /// Why the listing failed; absent when it did not.
    std::optional<PlatformError> error;
};

/// What a listing tells of each child: its name and kind alone (no look at the children), or its date as well
/// (one look at each).
enum class ListingDetail { kinds, dates };

/// Lists the direct children of a folder. A link to a folder is followed at the end of the path.
FolderListing listFolder(const std::filesystem::path& folder, ListingDetail detail);

/// Lists a folder that lies directly in `parent`, for walks: a link or the foot of another volume (a mount point) is
/// not entered but fails.
FolderListing listSubfolder(const std::filesystem::path& parent, const std::string& name, ListingDetail detail);

/// Looks at one item, not following a link at the end of the path; absent when it does not exist or may not be
/// looked at.
std::optional<ResourceValues> resourceValues(const std::filesystem::path& item);

/// Whether something exists at the path. Follows links: a dangling one does not exist.
bool itemExists(const std::filesystem::path& item);

/// Where a link leads, with every further link resolved; absent when it leads nowhere. The links keep their access
/// dates, where the system has a way to follow one without setting it (docs/decisions/following-links.md).
std::optional<std::filesystem::path> followLink(const std::filesystem::path& link);

/// As long as what it returns lives, following one link after another costs little: what it takes is kept.
std::shared_ptr<const void> readyToFollowLinks();

/// The path with every link in it resolved; absent when it leads nowhere. Sets the access dates of these links, and so
/// is not for scans.
std::optional<std::filesystem::path> resolvingLinks(const std::filesystem::path& item);

/// Whether a file system is mounted at this folder itself, or it is another one's folder shown there.
bool isMountPoint(const std::filesystem::path& folder);

}  // namespace vesk

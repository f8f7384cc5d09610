#include "platform/files/files.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/files/files_system.h"

namespace vesk {

namespace {

// The children of a folder whose opening gave `opened`, or errno.
FolderListing listOpened(const Descriptor& opened, ListingDetail detail) {
    FolderListing listing;
    if (!opened) {
        listing.error = posixError(errno);
        return listing;
    }
    const int failure = readNames(opened.get(), [&](ListedItem found) {
        FolderItem item;
        item.name = found.name;
        item.isDirectory = found.kind == ItemKind::folder;
        ResourceValues values;
        if ((detail == ListingDetail::dates || found.kind == ItemKind::unknown) &&
            statItem(opened.get(), found, values) == 0) {
            item.isDirectory = values.isDirectory;
            item.contentModificationDate = values.contentModificationDate;
        }
        listing.items.push_back(std::move(item));
    });
    if (failure != 0) {
        listing.items.clear();
        listing.error = posixError(failure);
        return listing;
    }
    // Folders come in whatever order the file system keeps them; sorted, every run numbers and names alike.
    std::sort(listing.items.begin(), listing.items.end(),
              [](const FolderItem& a, const FolderItem& b) { return a.name < b.name; });
    return listing;
}

}  // namespace

FolderListing listFolder(const std::filesystem::path& folder, ListingDetail detail) {
    return listOpened(openFolder(AT_FDCWD, folder.c_str(), LastLink::follow), detail);
}

FolderListing listSubfolder(const std::filesystem::path& parent, const std::string& name, ListingDetail detail) {
    const Descriptor above = openFolder(AT_FDCWD, parent.c_str(), LastLink::follow);
    return listOpened(above ? openChildOnSameDevice(above.get(), name.c_str()) : Descriptor(), detail);
}

std::optional<ResourceValues> resourceValues(const std::filesystem::path& item) {
    ResourceValues values;
    if (statItem(AT_FDCWD, item.c_str(), values) != 0) {
        return std::nullopt;
    }
    return values;
}

bool itemExists(const std::filesystem::path& item) {
    const std::optional<ResourceValues> values = resourceValues(item);
    return values && (!values->isSymbolicLink || followLink(item));
}

std::optional<std::filesystem::path> followLink(const std::filesystem::path& link) {
    std::optional<std::filesystem::path> target;
    return followWithoutTrace(link, target) ? target : resolvingLinks(link);
}

std::optional<std::filesystem::path> resolvingLinks(const std::filesystem::path& item) {
    std::error_code failure;
    std::filesystem::path resolved = std::filesystem::canonical(item, failure);
    if (failure) {
        return std::nullopt;
    }
    return resolved;
}

}  // namespace vesk

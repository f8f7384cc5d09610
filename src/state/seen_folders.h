// Which folders a scan found the entries of its cards in, so that a clean can tell whether they are still the same.
// Filled on the threads of a scan's rules, one object each, and merged by Store on the main thread.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <vector>

#include "core/card.h"
#include "platform/files/files.h"

namespace vesk {

class SeenFolders {
public:
    /// Looks at the folder of every entry, at each folder once.
    void look(const std::vector<Card>& cards);

    /// Takes over what another object saw. Of a folder that both saw, the first look stays.
    void merge(SeenFolders other) { folders_.merge(other.folders_); }

    /// The folder that the item at this path lay in; absent when it was not looked at or could not be.
    std::optional<FolderIdentity> folderOf(const std::filesystem::path& item) const;

private:
    std::map<std::filesystem::path::string_type, std::optional<FolderIdentity>> folders_;
};

}  // namespace vesk

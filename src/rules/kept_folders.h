// Folders of a Linux home that serve another purpose, so that rules do not offer them as a whole. For
// rules/idle_projects.cpp and rules/old_downloads.cpp.
#pragma once

#include <filesystem>
#include <set>

namespace vesk::rules {

/// The user's folders for documents, media and projects, and those where programs keep their files, each under its path
/// as written and, if it is a link, under its target's. Empty on a Mac.
class KeptFolders {
public:
    KeptFolders();

    /// Whether this is one of them, other than the folder for projects.
    bool contains(const std::filesystem::path& folder) const { return folders_.contains(folder); }
    /// Whether this is one of them or contains one, the folder for projects included.
    bool isAround(const std::filesystem::path& folder) const;

private:
    void keep(std::set<std::filesystem::path>& kept, const std::filesystem::path& folder);

    std::set<std::filesystem::path> folders_;
    // The folder that the user has named for projects.
    std::set<std::filesystem::path> projects_;
};

}  // namespace vesk::rules

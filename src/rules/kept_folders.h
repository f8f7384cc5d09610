// Folders of the home that rules keep out of since they serve for something else.
#pragma once

#include <filesystem>
#include <set>

namespace vesk::rules {

/// The folders of the home that other rules have to keep out of, as their paths are written and as their links lead:
/// the user's own for documents and media, and those where programs keep their things. Empty on a Mac.
class KeptFolders {
public:
    KeptFolders();

    /// Whether this is one of the user's folders for documents and media, or programs'.
    bool contains(const std::filesystem::path& folder) const { return folders_.contains(folder); }
    /// Whether one of them is this, or lies in it.
    bool isAround(const std::filesystem::path& folder) const;

private:
    void keep(std::set<std::filesystem::path>& kept, const std::filesystem::path& folder);

    std::set<std::filesystem::path> folders_;
    // Where projects are kept, by the user's own word.
    std::set<std::filesystem::path> projects_;
};

}  // namespace vesk::rules

// The folders for documents, media and downloads that a Linux desktop creates in a home, with names in the user's
// language (xdg-user-dirs 0.20). Callable from any thread.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vesk {

/// The folders by name: DESKTOP, DOWNLOAD, TEMPLATES, PUBLICSHARE, DOCUMENTS, MUSIC, PICTURES, VIDEOS and PROJECTS.
/// Absolute, without a trailing slash. Leaves out those that the user does not have (which are set to the home itself).
/// `settings` is the text of user-dirs.dirs; although that is a shell script, it is only parsed.
std::map<std::string, std::filesystem::path> userFoldersIn(std::string_view settings,
                                                           const std::filesystem::path& home);

/// The same for the current world; empty if there is no such file.
std::map<std::string, std::filesystem::path> userFolders();

}  // namespace vesk

// The folders for documents, media and downloads that a Linux desktop makes in a home, under names in the user's
// language (xdg-user-dirs 0.20). Callable from any thread.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vesk {

/// The folders by their names there: DESKTOP, DOWNLOAD, TEMPLATES, PUBLICSHARE, DOCUMENTS, MUSIC, PICTURES, VIDEOS and
/// PROJECTS. Absolute and without a slash at the end; one that the user does not have (set to the home itself) is left
/// out. `settings` is the text of user-dirs.dirs, which is never run as the shell script that it also is.
std::map<std::string, std::filesystem::path> userFoldersIn(std::string_view settings,
                                                           const std::filesystem::path& home);

/// The same for the world in force; none when there is no such file.
std::map<std::string, std::filesystem::path> userFolders();

}  // namespace vesk

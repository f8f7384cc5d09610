#include "platform/system/user_folders.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "platform/files/reading.h"
#include "platform/system/folder_variables.h"
#include "platform/text.h"
#include "platform/world.h"

namespace vesk {

namespace {

constexpr std::array<std::string_view, 9> userFolderNames = {
    "DESKTOP", "DOWNLOAD", "TEMPLATES", "PUBLICSHARE", "DOCUMENTS", "MUSIC", "PICTURES", "VIDEOS", "PROJECTS"};
constexpr std::int64_t largestSettings = 1'000'000;

// NAME of "XDG_NAME_DIR"; empty for any other text.
std::string_view nameIn(std::string_view key) {
    constexpr std::string_view prefix = "XDG_";
    constexpr std::string_view suffix = "_DIR";
    if (key.size() <= prefix.size() + suffix.size() || !key.starts_with(prefix) || !key.ends_with(suffix)) {
        return {};
    }
    const std::string_view name = key.substr(prefix.size(), key.size() - prefix.size() - suffix.size());
    return std::find(userFolderNames.begin(), userFolderNames.end(), name) == userFolderNames.end() ? "" : name;
}

// What stands between double quotes, with each character that follows a backslash as it is.
std::string unquoted(std::string_view text) {
    std::string result;
    for (std::size_t i = 1; i < text.size() && text[i] != '"'; ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            ++i;
        }
        result += text[i];
    }
    return result;
}

std::optional<std::filesystem::path> folderIn(std::string_view value, const std::filesystem::path& home) {
    constexpr std::string_view homeVariable = "$HOME";
    if (!value.starts_with('"')) {
        return std::nullopt;
    }
    std::string folder = unquoted(value);
    if (folder == homeVariable || folder.starts_with("$HOME/")) {
        folder.replace(0, homeVariable.size(), home.string());
    }
    return folder.starts_with('/') ? std::optional(plainFolder(folder)) : std::nullopt;
}

}  // namespace

std::map<std::string, std::filesystem::path> userFoldersIn(std::string_view settings,
                                                           const std::filesystem::path& home) {
    std::map<std::string, std::filesystem::path> folders;
    while (!settings.empty()) {
        const std::size_t end = std::min(settings.find('\n'), settings.size());
        const std::string_view line = trimmed(settings.substr(0, end));
        settings.remove_prefix(std::min(end + 1, settings.size()));
        const std::size_t equals = std::min(line.find('='), line.size());
        const std::string_view name = nameIn(trimmed(line.substr(0, equals)));
        const auto folder = equals == line.size() ? std::nullopt : folderIn(trimmed(line.substr(equals + 1)), home);
        if (!name.empty() && folder) {
            folders[std::string(name)] = *folder;
        }
    }
    std::erase_if(folders, [&](const auto& folder) { return folder.second == plainFolder(home); });
    return folders;
}

std::map<std::string, std::filesystem::path> userFolders() {
    // What a shell's settings move does not reach the desktop, which goes by its own.
    for (const std::filesystem::path& folder : {world().configHome, world().home / ".config"}) {
        if (const auto settings = readWithoutTrace(folder / "user-dirs.dirs", largestSettings)) {
            return userFoldersIn(*settings, world().home);
        }
    }
    return {};
}

}  // namespace vesk

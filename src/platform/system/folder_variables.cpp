#include "platform/system/folder_variables.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "platform/text.h"

namespace vesk {

namespace {

struct FolderVariable {
    std::string_view name;
    /// Whether the program takes the name in any case.
    bool anyCase = false;
    /// Whether it takes blanks and quotes around the value off.
    bool trims = false;
    /// Whether it puts other variables in for "$NAME" and "${NAME}".
    bool expands = false;
};

constexpr FolderVariable variablesRead[] = {
    {.name = "HF_HUB_CACHE", .expands = true},
    {.name = "HUGGINGFACE_HUB_CACHE", .expands = true},
    {.name = "HF_HOME", .expands = true},
    {.name = "TORCH_HOME"},
    {.name = "OLLAMA_MODELS", .trims = true},
    {.name = "HOMEBREW_CACHE"},
    {.name = "npm_config_cache", .anyCase = true},
    {.name = "PNPM_HOME"},
    {.name = "BUN_INSTALL_CACHE_DIR"},
    {.name = "BUN_INSTALL"},
    {.name = "PIP_CACHE_DIR"},
    {.name = "CHROME_CONFIG_HOME"},
    {.name = "FLATPAK_USER_DIR"},
    {.name = "FLATPAK_SYSTEM_DIR"},
};

bool isNamed(const FolderVariable& variable, std::string_view name) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    const auto same = [&](char a, char b) { return lower(a) == lower(b); };
    return variable.anyCase ? std::equal(name.begin(), name.end(), variable.name.begin(), variable.name.end(), same)
                            : name == variable.name;
}

std::optional<std::string_view> valueOf(const char* const* environment, std::string_view name) {
    for (const char* const* each = environment; *each != nullptr; ++each) {
        const std::string_view text = *each;
        if (text.size() > name.size() && text.starts_with(name) && text[name.size()] == '=') {
            return text.substr(name.size() + 1);
        }
    }
    return std::nullopt;
}

// A variable that is not set stays as it is written.
std::string expanded(std::string_view value, const char* const* environment) {
    const auto isOfName = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    };
    std::string result;
    while (!value.empty()) {
        const std::size_t dollar = std::min(value.find('$'), value.size());
        result += value.substr(0, dollar);
        value.remove_prefix(dollar);
        const bool braced = value.starts_with("${");
        const std::size_t start = braced ? 2 : 1;
        std::size_t end = std::min(start, value.size());
        while (end < value.size() && isOfName(value[end])) {
            ++end;
        }
        const bool closed = !braced || (end < value.size() && value[end] == '}');
        const std::size_t length = end + (braced && closed ? 1 : 0);
        const auto found =
            end > start && closed ? valueOf(environment, value.substr(start, end - start)) : std::nullopt;
        result += found.value_or(value.substr(0, length));
        value.remove_prefix(length);
    }
    return result;
}

}  // namespace

std::filesystem::path folderOfSetting(std::string_view value, const std::filesystem::path& home) {
    std::filesystem::path folder = value.starts_with("~/") ? home / value.substr(2) : std::filesystem::path(value);
    return folder.is_absolute() ? plainFolder(folder) : std::filesystem::path();
}

std::filesystem::path plainFolder(const std::filesystem::path& folder) {
    std::filesystem::path plain = folder.lexically_normal();
    return plain.has_filename() || !plain.has_relative_path() ? plain : plain.parent_path();
}

std::multimap<std::string, std::filesystem::path> variableFolders(const char* const* environment,
                                                                  const std::filesystem::path& home) {
    std::multimap<std::string, std::filesystem::path> folders;
    for (const char* const* each = environment; *each != nullptr; ++each) {
        const std::string_view text = *each;
        const std::size_t equals = std::min(text.find('='), text.size());
        for (const FolderVariable& variable : variablesRead) {
            if (equals < text.size() && isNamed(variable, text.substr(0, equals))) {
                std::string value(text.substr(equals + 1));
                value = variable.trims ? std::string(trimmed(value, " \t\r\n\"'")) : value;
                value = variable.expands ? expanded(value, environment) : value;
                if (std::filesystem::path folder = folderOfSetting(value, home); !folder.empty()) {
                    folders.emplace(variable.name, std::move(folder));
                }
            }
        }
    }
    return folders;
}

}  // namespace vesk

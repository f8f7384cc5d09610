// Where the rules look in a Linux home, as tables. docs/where-vesk-looks.md describes them to users and says where each
// was documented. Besides these, the rules look only in the places of a Mac, which a Linux home rarely has.
//
// A pattern is a path. Its first part is the start:
//   ~                     the home folder
//   CACHE, CONFIG, DATA   $XDG_CACHE_HOME, $XDG_CONFIG_HOME and $XDG_DATA_HOME, and also their defaults
//   $NAME                 the folder that a variable names (platform/system/folder_variables.h); nothing if it is unset
//   LMSTUDIO              the folder that ~/.lmstudio-home-pointer names
// In the other parts, "*" matches any characters except a leading ".", and "{a,b}" matches either text. A part with a
// star before the last one matches folders, but not links to folders.
#pragma once

#include <array>
#include <string_view>

namespace vesk::rules {

/// Which kinds of item are taken at a place.
enum class Taken {
    /// Any item, as at a Mac's fixed places.
    anything,
    /// A folder, but not a link to one.
    folders,
    /// The same, if it contains only files, folders and links: a socket, a pipe or a mount means that it is in use.
    plainFolders,
    /// Anything but a folder.
    files,
};

struct LinuxPlace {
    std::string_view pattern;
    /// The entry's name. If empty, the entry is named after the application: the part that matched the first star, or
    /// else the last part.
    std::string_view name;
    Taken taken = Taken::anything;
    /// A path relative to the item that must exist too; empty if none must.
    std::string_view besides = {};
    /// A pattern relative to the item: if anything matches, the item is not taken.
    std::string_view unless = {};
};

/// Places of a Mac, relative to the home, that the tables below replace with narrower ones.
inline constexpr std::array<std::string_view, 5> narrowedOnLinux = {
    ".cache/huggingface", ".cache/lm-studio", ".cache/torch", ".pnpm-store", ".bun/install/cache"};

// "App caches" start ticked, so only caches known to be rebuilt by themselves are listed. From outside, one that holds
// more than copies (received files, unsaved scans, changes not yet sent) looks like any other.
inline constexpr LinuxPlace linuxCaches[] = {
    {"CACHE/{mozilla,chromium,google-chrome*,thumbnails,go-build,yarn,ccache,pre-commit}", "", Taken::plainFolders},
    {"~/.var/app/*/cache/{mozilla,chromium,google-chrome*,thumbnails,go-build,yarn,ccache,pre-commit}", "",
     Taken::plainFolders},
    // Electron's: "Local Storage" tells them from other folders of these names.
    {"CONFIG/*/{Cache,Code Cache,GPUCache,DawnGraphiteCache,DawnWebGPUCache,CachedData,CachedExtensionVSIXs}", "",
     Taken::plainFolders, "../Local Storage"},
};

// The reports only: the crash handler still needs its settings, locks and counters.
inline constexpr LinuxPlace linuxCrashReports[] = {
    {"~/.mozilla/firefox/Crash Reports/pending/*.{dmp,extra,memory.json.gz}", "Crash report", Taken::files},
    {"~/.mozilla/firefox/Crash Reports/submitted/bp-*.txt", "Crash report", Taken::files},
    {"CONFIG/mozilla/firefox/Crash Reports/pending/*.{dmp,extra,memory.json.gz}", "Crash report", Taken::files},
    {"CONFIG/mozilla/firefox/Crash Reports/submitted/bp-*.txt", "Crash report", Taken::files},
    {"~/snap/firefox/common/.mozilla/firefox/Crash Reports/pending/*.{dmp,extra,memory.json.gz}", "Crash report",
     Taken::files},
    {"~/snap/firefox/common/.mozilla/firefox/Crash Reports/submitted/bp-*.txt", "Crash report", Taken::files},
    {"~/.var/app/org.mozilla.firefox/.mozilla/firefox/Crash Reports/pending/*.{dmp,extra,memory.json.gz}",
     "Crash report", Taken::files},
    {"~/.var/app/org.mozilla.firefox/.mozilla/firefox/Crash Reports/submitted/bp-*.txt", "Crash report", Taken::files},
    {"CONFIG/{google-chrome,google-chrome-beta,google-chrome-unstable,chromium}/Crash Reports/"
     "{new,pending,completed}/*.{dmp,meta}",
     "Crash report", Taken::files, "../../settings.dat"},
    {"$CHROME_CONFIG_HOME/{google-chrome,google-chrome-beta,google-chrome-unstable,chromium}/Crash Reports/"
     "{new,pending,completed}/*.{dmp,meta}",
     "Crash report", Taken::files, "../../settings.dat"},
    {"CONFIG/*/Crashpad/{new,pending,completed}/*.{dmp,meta}", "Crash report", Taken::files, "../../settings.dat"},
    {"CACHE/kcrash-metadata/*.ini", "Crash report", Taken::files},
};

inline constexpr LinuxPlace linuxModels[] = {
    {"$HF_HUB_CACHE/models--*", "Hugging Face models", Taken::folders},
    {"$HUGGINGFACE_HUB_CACHE/models--*", "Hugging Face models", Taken::folders},
    {"$HF_HOME/hub/models--*", "Hugging Face models", Taken::folders},
    {"CACHE/huggingface/hub/models--*", "Hugging Face models", Taken::folders},
    {"$TORCH_HOME/hub/checkpoints", "PyTorch models"},
    {"CACHE/torch/hub/checkpoints", "PyTorch models"},
    {"$OLLAMA_MODELS", "Ollama models"},
    {"~/.ollama/models", "Ollama models"},
    {"LMSTUDIO/models", "LM Studio models"},
    {"~/.lmstudio/models", "LM Studio models"},
    {"~/.cache/lm-studio/models", "LM Studio models"},
};

inline constexpr LinuxPlace linuxHomebrew[] = {
    {"$HOMEBREW_CACHE/downloads", "Homebrew downloads"},
    {"CACHE/Homebrew/downloads", "Homebrew downloads"},
};

// If a store contains "links", projects and programs may link into it, and removing it would break them.
inline constexpr LinuxPlace linuxPackages[] = {
    {"~/.npm", "npm cache"},
    {"$npm_config_cache/{_cacache,_npx}", "npm cache"},
    {"$PNPM_HOME/store", "pnpm cache", Taken::anything, "", "v*/links/*"},
    {"DATA/pnpm/store", "pnpm cache", Taken::anything, "", "v*/links/*"},
    {"~/.pnpm-store", "pnpm cache", Taken::anything, "", "v*/links/*"},
    {"CACHE/pnpm", "pnpm cache", Taken::anything, "", "v*/links/*"},
    {"$BUN_INSTALL_CACHE_DIR", "bun cache", Taken::anything, "", "links/*"},
    {"$BUN_INSTALL/install/cache", "bun cache", Taken::anything, "", "links/*"},
    {"CACHE/.bun/install/cache", "bun cache", Taken::anything, "", "links/*"},
    {"~/.bun/install/cache", "bun cache", Taken::anything, "", "links/*"},
    {"$PIP_CACHE_DIR", "pip cache"},
    {"CACHE/pip", "pip cache"},
};

inline constexpr LinuxPlace linuxDisks[] = {
    {"~/.docker/desktop/vms", "Docker disk image"},
};

// Leftovers: the folders of Flatpaks and snaps that are not installed (installed_packages.h).
inline constexpr LinuxPlace linuxFlatpakFolders[] = {{"~/.var/app/*", "", Taken::folders}};
inline constexpr LinuxPlace linuxSnapFolders[] = {{"~/snap/*", "", Taken::folders}};

}  // namespace vesk::rules

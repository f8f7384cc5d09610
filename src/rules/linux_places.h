// Where the rules look in a Linux home, as tables: docs/where-vesk-looks.md shows them to users and says what each is
// known by. What is not listed here is not looked at, but for the places of a Mac, which a Linux home hardly has.
//
// A place is written as a path whose first part says where it starts:
//   ~          the home folder
//   CACHE, CONFIG, DATA   $XDG_CACHE_HOME, $XDG_CONFIG_HOME, $XDG_DATA_HOME, and the folders that stand for them unset
//   $NAME      the folder that a variable names (platform/system/folder_variables.h); none where it is not set
//   LMSTUDIO   the folder that ~/.lmstudio-home-pointer names
// In the other parts "*" stands for any characters, though not for a "." at the start, and "{a,b}" for either text. A
// part with a star on the way stands for folders, not for links to one.
#pragma once

#include <array>
#include <string_view>

namespace vesk::rules {

/// What of an item's kinds is taken at a place.
enum class Taken {
    /// Whatever lies there, as at a Mac's fixed places.
    anything,
    /// A folder, but no link to one.
    folders,
    /// The same, and nothing in it but files, folders and links: a socket, a pipe or a mount shows that it is at work.
    plainFolders,
    /// Whatever is no folder.
    files,
};

struct LinuxPlace {
    std::string_view pattern;
    /// The entry's name; empty for that of the application whose folder it is: the first part with a star, or else the
    /// last part.
    std::string_view name;
    Taken taken = Taken::anything;
    /// Relative to the item: what has to be there as well; empty when nothing has to.
    std::string_view besides = {};
    /// Relative to the item, with stars: if anything is there, the item is left.
    std::string_view unless = {};
};

/// Places of a Mac, relative to the home, of which a Linux home's table has a narrower form.
inline constexpr std::array<std::string_view, 5> narrowedOnLinux = {
    ".cache/huggingface", ".cache/lm-studio", ".cache/torch", ".pnpm-store", ".bun/install/cache"};

// "App caches" start ticked, so only names stand here that are known to be made again by themselves. A cache that
// holds more than copies (received files, unsaved scans, changes not yet sent) looks like any other from outside.
inline constexpr LinuxPlace linuxCaches[] = {
    {"CACHE/{mozilla,chromium,google-chrome*,thumbnails,go-build,yarn,ccache,pre-commit}", "", Taken::plainFolders},
    {"~/.var/app/*/cache/{mozilla,chromium,google-chrome*,thumbnails,go-build,yarn,ccache,pre-commit}", "",
     Taken::plainFolders},
    // Electron's. "Local Storage" tells its folders from others' of these names.
    {"CONFIG/*/{Cache,Code Cache,GPUCache,DawnGraphiteCache,DawnWebGPUCache,CachedData,CachedExtensionVSIXs}", "",
     Taken::plainFolders, "../Local Storage"},
};

// What a crash handler needs itself, its settings, locks and counts, stays.
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

// Projects and programs may be links into a store that has "links" in it: without the store they are broken.
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

// Leftovers: the folder of each Flatpak and each snap, unless it is installed (installed_packages.h).
inline constexpr LinuxPlace linuxFlatpakFolders[] = {{"~/.var/app/*", "", Taken::folders}};
inline constexpr LinuxPlace linuxSnapFolders[] = {{"~/snap/*", "", Taken::folders}};

}  // namespace vesk::rules

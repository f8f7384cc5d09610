// The world: which folder is "/", which is the home folder, and where preferences and the Trash are. A program sets it
// once, at the start of main. Tests and tools set another one, so that nothing they do can reach the real home, the
// real "/" or the real Trash.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vesk {

/// The kind of system: where programs keep their files.
enum class Layout { macos, linuxDesktop };

struct World {
    /// Determines where the rules look. A made-up world is a Mac by default, on any machine.
    Layout layout = Layout::macos;
    /// The folder that stands for "/".
    std::filesystem::path root = "/";
    /// The current user's home folder; empty if it cannot be determined.
    std::filesystem::path home;
    /// Where Linux programs store preferences (XDG Base Directory Specification 0.8, $XDG_CONFIG_HOME).
    std::filesystem::path configHome;
    /// Where the home Trash is on Linux (the same document, $XDG_DATA_HOME).
    std::filesystem::path dataHome;
    /// Where Linux programs store what they can recreate (the same document, $XDG_CACHE_HOME).
    std::filesystem::path cacheHome;
    /// Where files for the session go (the same document, $XDG_RUNTIME_DIR); empty if there is no such place.
    std::filesystem::path runtimeHome;

    /// The folders that environment variables name, by variable (platform/system/folder_variables.h); none in a made-up
    /// world and on a Mac.
    std::multimap<std::string, std::filesystem::path> variableFolders;

    /// The current user's world: "/", $HOME (the user database if it is unset, empty or relative), and the XDG folders.
    /// Relative values are ignored, as their specification says. So are values inside a snap's or Flatpak's own folder:
    /// the terminal of a sandboxed program passes them on, and a Trash there would grow unseen.
    static World ofCurrentUser();

    /// A made-up world: only `root` and `home`, with preferences and Trash inside `home`.
    static World below(std::filesystem::path root, std::filesystem::path home, Layout layout = Layout::macos);

    /// Why `home` must not be scanned: it is unknown, or it is the whole disk, by whatever path. Or why it must not be
    /// changed: it belongs to a user other than this process's, who could not open what is created there. vesk and
    /// vesk-scan check this before anything else.
    enum class HomeFault { none, unknown, wholeDisk, anothers };
    HomeFault homeFault() const;

    /// Whether this is the world that the system's services know: the real "/" and the home folder in the user
    /// database. In any other world, services that take no folder (macOS's Trash and user defaults) would reach beyond
    /// it and must not be used.
    bool isReal() const;
    /// The same, if `homeOfUser` is the home folder in the user database.
    bool isRealWith(const std::filesystem::path& homeOfUser) const;

    /// The path below `root` that stands for an absolute path such as "/Applications".
    std::filesystem::path rooted(std::string_view absolute) const;

    friend bool operator==(const World&, const World&) = default;
};

/// The current world. Readable from any thread once set.
const World& world();

/// Whether the current world is the current user's, and not a made-up one. A world made up through the environment
/// ($HOME) counts as made up.
bool isWorldOfCurrentUser();

/// Sets the world. Call it before anything else.
void setWorld(World world);

}  // namespace vesk

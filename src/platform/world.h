// Where the world lies: the one place that says which folder is "/", which is the home folder and where
// preferences and Trash are kept. A program sets it once, first thing in main; tests and tools set another one,
// so that nothing they do can reach the real home, the real "/" or the real Trash.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace vesk {

/// Which kind of system a world shows: where programs keep their things in it.
enum class Layout { macos, linuxDesktop };

struct World {
    /// Decides in which places the rules look. A made-up world shows a Mac unless it says otherwise, on any machine.
    Layout layout = Layout::macos;
    /// The folder that stands for "/".
    std::filesystem::path root = "/";
    /// The signed-in user's home folder; empty when it cannot be told.
    std::filesystem::path home;
    /// Where Linux programs keep preferences (XDG Base Directory Specification 0.8, $XDG_CONFIG_HOME).
    std::filesystem::path configHome;
    /// Where the home Trash lies on Linux (the same document, $XDG_DATA_HOME).
    std::filesystem::path dataHome;
    /// Where Linux programs keep what they can make again (the same document, $XDG_CACHE_HOME).
    std::filesystem::path cacheHome;
    /// Where what lasts no longer than a session is kept (the same document, $XDG_RUNTIME_DIR); empty when there is no
    /// such place.
    std::filesystem::path runtimeHome;

    /// The folders that variables of the environment name, by variable (platform/system/folder_variables.h); none in a
    /// made-up world and on a Mac.
    std::multimap<std::string, std::filesystem::path> variableFolders;

    /// The world of whoever runs this process: "/", $HOME (the user database when it is unset, empty or relative),
    /// and the XDG folders. Relative values of theirs are ignored, as their specification says. So are those inside
    /// a snap's or Flatpak's own folder: the terminal of a sandboxed program hands them to what is started from it, and
    /// a Trash there would grow unseen.
    static World ofCurrentUser();

    /// A made-up world: below `root` and `home` alone, with preferences and Trash inside `home`.
    static World below(std::filesystem::path root, std::filesystem::path home, Layout layout = Layout::macos);

    /// Why nothing may be looked for in `home`: it cannot be told, or it is the computer's whole disk, by whatever
    /// path. Or why nothing may be changed there: it belongs to another user than the one this process runs as, who
    /// could not open what is made in it. Every program that scans asks before it does anything else.
    enum class HomeFault { none, unknown, wholeDisk, anothers };
    HomeFault homeFault() const;

    /// Whether this is the world that the system's own services know: the real "/" and the home folder that the user
    /// database names. In any other one a service without a folder to its name (macOS's Trash and user defaults) would
    /// reach beyond it and must not be asked.
    bool isReal() const;
    /// The same, where the user database names `homeOfUser`.
    bool isRealWith(const std::filesystem::path& homeOfUser) const;

    /// The place below `root` that stands for an absolute path such as "/Applications".
    std::filesystem::path rooted(std::string_view absolute) const;

    friend bool operator==(const World&, const World&) = default;
};

/// The world in force. Readable from any thread once set.
const World& world();

/// Whether the world in force is the one of whoever runs this process, and not a made-up one; one made up through the
/// environment ($HOME) counts as such too.
bool isWorldOfCurrentUser();

/// Sets the world. Call it before anything else runs.
void setWorld(World world);

}  // namespace vesk

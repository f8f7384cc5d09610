// A made-up Mac to show Vesk on: a start-up volume with one user's home, in which every rule finds something. Or a
// made-up Linux computer, in whose home those rules do that look there.
// Used by vesk-demo and by tests; nothing outside the given folder is read or written.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "platform/world.h"

namespace vesk {

/// Room in bytes for a made-up Mac; more than it takes.
inline constexpr std::uintmax_t roomForDemoHome = std::uintmax_t{300} << 20U;

/// Fills `folder`, which must be absolute and empty or not there yet, and returns the world that lies in it: `folder`
/// stands for "/", the home is below "Users" ("home" on Linux). Ages count from `now()`. Takes about 250 MB on disk,
/// set aside without being written where the file system can do that. Absent when the folder holds anything or
/// something could not be made (a full disk, say); what was made until then stays.
std::optional<World> makeDemoHome(const std::filesystem::path& folder, Layout layout = Layout::macos);

/// One file of the made-up computer.
struct DemoFile {
    /// Relative to the start-up volume's top.
    std::string path;
    std::int64_t kilobytes = 0;
    /// Days since it was last changed and read. A folder is as old as the newest file in it.
    double age = 0;
};

/// The home folder, relative to the volume's top.
const char* demoHomePath(Layout layout);

/// Every file but the few with a text of their own (Info.plist, the backup tool, desktop files).
std::vector<DemoFile> demoFiles(Layout layout);

}  // namespace vesk

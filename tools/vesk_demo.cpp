// Vesk on a made-up Mac: the real window over a home in a temporary folder, with preferences and a Trash of its own,
// all of it removed when the window closes. Nothing outside that folder is read or written.
//
//   vesk-demo [--layout macos|linux] [--folder DIR]
//     --layout   what is made up: a Mac, unless it says otherwise, or a Linux computer
//     --folder   keeps it in DIR, which is made when it is missing, for the next time; what lies there stays what it is

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>

#include "app/application.h"
#include "demo_home/demo_home.h"
#include "platform/world.h"
#include "temporary_folder.h"

namespace {

namespace fs = std::filesystem;

// Say that a folder holds a computer of this program's, of which kind, and not somebody's files.
constexpr const char* macMarker = "made-by-vesk-demo";
constexpr const char* linuxMarker = "made-by-vesk-demo-linux";

// The made-up Mac has a disk to match its quarter of a gigabyte of files; on a real one they would not show.
vesk::Store::Sources demoSources() {
    vesk::Store::Sources sources;
    sources.volume = [] { return vesk::VolumeFigures{1'000'000'000, 320'000'000}; };
    return sources;
}

// The computer that is kept in `folder`, made there if the folder is missing or empty. Absent when it holds anything
// else.
std::optional<vesk::World> keptWorld(const fs::path& folder, vesk::Layout layout) {
    const fs::path computer = folder / "mac";
    std::error_code failure;
    for (const vesk::Layout kept : {vesk::Layout::macos, vesk::Layout::linuxDesktop}) {
        if (fs::exists(folder / (kept == vesk::Layout::macos ? macMarker : linuxMarker), failure)) {
            return vesk::World::below(computer, computer / vesk::demoHomePath(kept), kept);
        }
    }
    fs::create_directories(folder, failure);
    if (failure || !fs::is_empty(folder, failure) || failure) {
        return std::nullopt;
    }
    const std::optional<vesk::World> world = vesk::makeDemoHome(computer, layout);
    const bool marked =
        world && std::ofstream(folder / (layout == vesk::Layout::macos ? macMarker : linuxMarker)).good();
    return marked ? world : std::nullopt;
}

int run(int argc, char** argv, const std::optional<vesk::World>& world, const std::function<void()>& tidyUp) {
    if (!world) {
        std::fputs("vesk-demo: cannot create the made-up home\n", stderr);
        return EXIT_FAILURE;
    }
    vesk::setWorld(*world);
    return vesk::runProgram(argc, argv, demoSources(), tidyUp);
}

int runInTemporaryFolder(int argc, char** argv, vesk::Layout layout) {
    vesk::TemporaryFolder folder("vesk-demo");
    return run(argc, argv, folder.path().empty() ? std::nullopt : vesk::makeDemoHome(folder.path() / "mac", layout),
               [&folder] { folder.remove(); });
}

}  // namespace

int main(int argc, char** argv) {
    vesk::Layout layout = vesk::Layout::macos;
    std::optional<fs::path> folder;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string_view option = argv[i];
        if (option == "--folder") {
            std::error_code failure;
            folder = fs::absolute(argv[i + 1], failure);
        } else if (option == "--layout") {
            layout = std::string_view(argv[i + 1]) == "linux" ? vesk::Layout::linuxDesktop : vesk::Layout::macos;
        }
    }
    if (folder) {
        return vesk::leave(run(argc, argv, keptWorld(*folder, layout), [] {}));
    }
    return vesk::leave(runInTemporaryFolder(argc, argv, layout));
}

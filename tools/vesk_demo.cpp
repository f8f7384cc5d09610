// Vesk on a made-up Mac: the real window over a home in a temporary folder, with preferences and a Trash of its own,
// all of it removed when the window closes. Nothing outside that folder is read or written.
//
//   vesk-demo [--folder DIR]     keeps the Mac in DIR, which is made when it is missing, for the next time

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

// Says that a folder holds a Mac of this program's, and not somebody's files.
constexpr const char* marker = "made-by-vesk-demo";

// The made-up Mac has a disk to match its quarter of a gigabyte of files; on a real one they would not show.
vesk::Store::Sources demoSources() {
    vesk::Store::Sources sources;
    sources.volume = [] { return vesk::VolumeFigures{1'000'000'000, 320'000'000}; };
    return sources;
}

// The Mac that is kept in `folder`, made there if the folder is missing or empty. Absent when it holds anything else.
std::optional<vesk::World> keptWorld(const fs::path& folder) {
    const fs::path mac = folder / "mac";
    std::error_code failure;
    if (fs::exists(folder / marker, failure)) {
        return vesk::World::below(mac, mac / vesk::demoHomePath);
    }
    fs::create_directories(folder, failure);
    if (failure || !fs::is_empty(folder, failure) || failure) {
        return std::nullopt;
    }
    const std::optional<vesk::World> world = vesk::makeDemoHome(mac);
    return world && std::ofstream(folder / marker) ? world : std::nullopt;
}

int run(int argc, char** argv, const std::optional<vesk::World>& world, const std::function<void()>& tidyUp) {
    if (!world) {
        std::fputs("vesk-demo: cannot create the made-up home\n", stderr);
        return EXIT_FAILURE;
    }
    vesk::setWorld(*world);
    return vesk::runProgram(argc, argv, demoSources(), tidyUp);
}

int runInTemporaryFolder(int argc, char** argv) {
    vesk::TemporaryFolder folder("vesk-demo");
    return run(argc, argv, folder.path().empty() ? std::nullopt : vesk::makeDemoHome(folder.path() / "mac"),
               [&folder] { folder.remove(); });
}

}  // namespace

int main(int argc, char** argv) {
    if (argc >= 3 && std::string_view(argv[1]) == "--folder") {
        std::error_code failure;
        return vesk::leave(run(argc, argv, keptWorld(fs::absolute(argv[2], failure)), [] {}));
    }
    return vesk::leave(runInTemporaryFolder(argc, argv));
}

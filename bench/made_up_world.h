// The world in which scans are measured: only the tree in it is real.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/world.h"
#include "temporary_folder.h"

namespace vesk::bench {

// An empty folder that stands for "/". It may contain a home whose "Library/Caches/tree" is a link to the tree, which
// saves making a million files for each run.
class MadeUpWorld {
public:
    enum class TreeIs { home, linuxHome, cache };

    /// A world with an empty home. Ends the program if its folder cannot be created.
    MadeUpWorld() {
        if (folder_.path().empty()) {
            std::perror("making a folder");
            std::exit(1);
        }
        std::filesystem::create_directories(caches());
        setWorld(World::below(folder_.path(), home()));
    }
    /// A world with that tree in it.
    MadeUpWorld(const std::filesystem::path& tree, TreeIs role) : MadeUpWorld() {
        const std::filesystem::path whole = std::filesystem::canonical(tree);
        if (role != TreeIs::cache) {
            const Layout layout = role == TreeIs::home ? Layout::macos : Layout::linuxDesktop;
            setWorld(World::below(folder_.path(), whole, layout));
        } else {
            std::filesystem::create_directory_symlink(whole, caches() / "tree");
        }
    }
    MadeUpWorld(const MadeUpWorld&) = delete;
    MadeUpWorld& operator=(const MadeUpWorld&) = delete;

private:
    std::filesystem::path home() const { return folder_.path() / "home"; }
    std::filesystem::path caches() const { return home() / "Library/Caches"; }

    const TemporaryFolder folder_{"vesk-bench"};
};

}  // namespace vesk::bench

// The world that a scan is measured in: only the tree is real.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "platform/world.h"
#include "temporary_folder.h"

namespace vesk::bench {

// An empty folder that stands for "/". In it may lie a home whose "Library/Caches/tree" is a link to the tree, since a
// million files are not made for each run.
class MadeUpWorld {
public:
    enum class TreeIs { home, cache };

    /// A world with an empty home. Ends the program when its folder cannot be made.
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
        if (role == TreeIs::home) {
            setWorld(World::below(folder_.path(), whole));
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

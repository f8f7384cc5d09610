// The world that a scan is measured in: only the tree is real.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/world.h"

namespace vesk::bench {

// An empty folder that stands for "/". In it may lie a home whose "Library/Caches/tree" is a link to the tree, since a
// million files are not made for each run.
class MadeUpWorld {
public:
    enum class TreeIs { home, cache };

    /// A world with an empty home. Ends the program when its folder cannot be made.
    MadeUpWorld() {
        std::string pattern = (std::filesystem::temp_directory_path() / "vesk-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            std::perror("making a folder");
            std::exit(1);
        }
        folder_ = pattern;
        std::filesystem::create_directories(caches());
        setWorld(World::below(folder_, home()));
    }
    /// A world with that tree in it.
    MadeUpWorld(const std::filesystem::path& tree, TreeIs role) : MadeUpWorld() {
        const std::filesystem::path whole = std::filesystem::canonical(tree);
        if (role == TreeIs::home) {
            setWorld(World::below(folder_, whole));
        } else {
            std::filesystem::create_directory_symlink(whole, caches() / "tree");
        }
    }
    MadeUpWorld(const MadeUpWorld&) = delete;
    MadeUpWorld& operator=(const MadeUpWorld&) = delete;
    ~MadeUpWorld() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

private:
    std::filesystem::path home() const { return folder_ / "home"; }
    std::filesystem::path caches() const { return home() / "Library/Caches"; }

    std::filesystem::path folder_;
};

}  // namespace vesk::bench

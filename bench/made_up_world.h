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

    /// Ends the program when the folder cannot be made.
    MadeUpWorld(const std::filesystem::path& tree, TreeIs role) {
        std::string pattern = (std::filesystem::temp_directory_path() / "vesk-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            std::perror("making a folder");
            std::exit(1);
        }
        folder_ = pattern;
        const std::filesystem::path whole = std::filesystem::canonical(tree);
        if (role == TreeIs::home) {
            setWorld(World::below(folder_, whole));
            return;
        }
        const std::filesystem::path home = folder_ / "home";
        std::filesystem::create_directories(home / "Library/Caches");
        std::filesystem::create_directory_symlink(whole, home / "Library/Caches/tree");
        setWorld(World::below(folder_, home));
    }
    MadeUpWorld(const MadeUpWorld&) = delete;
    MadeUpWorld& operator=(const MadeUpWorld&) = delete;
    ~MadeUpWorld() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

private:
    std::filesystem::path folder_;
};

}  // namespace vesk::bench

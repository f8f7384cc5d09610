// vesk-trees FOLDER NAME...: makes those of the named trees that are missing in FOLDER, and prints a line for each.
// vesk-trees --list: lists all trees with descriptions.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tree_shapes.h"
#include "tree_writer.h"

namespace {

using vesk::bench::Shape;

// A stamp, written last, says that a tree is complete, and its version.
std::string stampOf(const Shape& shape, std::int64_t files) {
    return "version " + std::to_string(vesk::bench::treeVersion) + " of " + std::string(shape.name) + ": " +
           std::to_string(files) + " files\n";
}

bool isThere(const Shape& shape, const std::filesystem::path& stamp) {
    std::ifstream file(stamp);
    std::string line;
    return std::getline(file, line) && line.starts_with("version " + std::to_string(vesk::bench::treeVersion) + " of " +
                                                        std::string(shape.name) + ":");
}

void provide(const Shape& shape, const std::filesystem::path& where) {
    const std::filesystem::path tree = where / shape.name;
    const std::filesystem::path stamp = where / (std::string(shape.name) + ".stamp");
    if (!isThere(shape, stamp)) {
        std::filesystem::remove(stamp);
        std::filesystem::remove_all(tree);
        const int parent = open(where.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        const int folder = vesk::bench::makeFolder(parent, std::string(shape.name));
        vesk::bench::closeFolder(parent);
        const std::int64_t files = shape.make(folder);
        vesk::bench::closeFolder(folder);
        std::ofstream(stamp) << stampOf(shape, files);
    }
    std::printf("%s: %s\n", tree.c_str(), std::string(shape.description).c_str());
}

}  // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> given(arguments + 1, arguments + count);
    const std::vector<Shape> known = vesk::bench::shapes();
    if (given == std::vector<std::string>{"--list"}) {
        for (const Shape& shape : known) {
            std::printf("%s\t%s\n", std::string(shape.name).c_str(), std::string(shape.description).c_str());
        }
        return 0;
    }
    if (given.size() < 2) {
        std::fprintf(stderr, "usage: vesk-trees FOLDER NAME... | --list\n");
        return 2;
    }
    std::filesystem::create_directories(given.front());
    for (std::size_t i = 1; i < given.size(); ++i) {
        const auto shape = std::find_if(known.begin(), known.end(),
                                        [&](const Shape& candidate) { return candidate.name == given[i]; });
        if (shape == known.end()) {
            std::fprintf(stderr, "vesk-trees: no tree is called %s\n", given[i].c_str());
            return 2;
        }
        provide(*shape, given.front());
    }
    return 0;
}

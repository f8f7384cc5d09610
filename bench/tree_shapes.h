// The shapes of the trees that the benchmarks walk. Each is the same on every machine: its names, sizes, dates and
// nesting follow from the seed alone.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::bench {

/// Part of a stamp beside each tree: trees with another number are made again.
constexpr int treeVersion = 1;

struct Shape {
    /// What the command line calls it, and the folder that it is made in.
    std::string_view name;
    /// One line for the reader of the results.
    std::string_view description;
    /// Makes the tree in an open, empty folder. Returns the number of regular files.
    std::function<std::int64_t(int folder)> make;
};

/// Every shape, the small ones first.
std::vector<Shape> shapes();

}  // namespace vesk::bench

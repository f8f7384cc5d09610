// Creates files and folders as fast as the file system allows, for trees of a million files. Any failure ends the
// program with a message: half a tree would give meaningless figures.
#pragma once

#include <cstdint>
#include <string>

namespace vesk::bench {

/// A seeded sequence that is the same on every platform (the standard library's distributions are not).
class Sequence {
public:
    explicit Sequence(std::uint64_t seed) : state_(seed) {}
    std::uint64_t next();
    /// At least 0 and less than `bound`, which is at least 1.
    std::uint64_t below(std::uint64_t bound) { return next() % bound; }
    /// At least 0 and less than 1.
    double fraction() { return static_cast<double>(next() >> 11U) * 0x1p-53; }

private:
    std::uint64_t state_;
};

/// Makes a folder and opens it.
int makeFolder(int parent, const std::string& name);
/// Creates the missing folders of a path such as "Library/Caches", and opens the last.
int makeFolders(int parent, const std::string& path);
void closeFolder(int folder);

/// Creates a file of 0, 1 or 2 blocks (half are empty: a scan's cost depends on the number of files, not their size),
/// dated some months back, so that rules consider it unused.
void makeFile(int folder, const std::string& name, Sequence& sequence);
/// Makes a file with this text.
void makeTextFile(int folder, const std::string& name, const std::string& text);
/// Dates a folder like its files. Call it last: adding to a folder changes its date.
void dateBack(int folder);

/// Ends the program with a message and the errno text.
[[noreturn]] void fail(const std::string& what);

}  // namespace vesk::bench

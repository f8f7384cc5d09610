#include "tree_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace vesk::bench {

namespace {

constexpr std::int64_t secondsPerDay = 86'400;

// The dates of everything, between four and eight months before today's midnight.
timespec someDate(std::uint64_t pick) {
    constexpr std::uint64_t spanDays = 120;
    constexpr std::int64_t youngestDays = 120;
    const std::int64_t today = time(nullptr) / secondsPerDay * secondsPerDay;
    const auto days = static_cast<std::int64_t>(pick % spanDays) + youngestDays;
    return timespec{today - days * secondsPerDay, 0};
}

void setDates(int opened, std::uint64_t pick) {
    const timespec date = someDate(pick);
    const std::array<timespec, 2> dates = {date, date};
    if (futimens(opened, dates.data()) != 0) {
        fail("setting a date");
    }
}

int openNewFile(int folder, const std::string& name) {
    const int file = openat(folder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (file < 0) {
        fail("making the file " + name);
    }
    return file;
}

}  // namespace

// The generator known as SplitMix64.
std::uint64_t Sequence::next() {
    state_ += 0x9e3779b97f4a7c15U;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9U;
    mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebU;
    return mixed ^ (mixed >> 31U);
}

int makeFolder(int parent, const std::string& name) {
    if (mkdirat(parent, name.c_str(), 0755) != 0 && errno != EEXIST) {
        fail("making the folder " + name);
    }
    const int folder = openat(parent, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0) {
        fail("opening the folder " + name);
    }
    return folder;
}

int makeFolders(int parent, const std::string& path) {
    int folder = fcntl(parent, F_DUPFD_CLOEXEC, 0);
    if (folder < 0) {
        fail("opening a folder twice");
    }
    for (std::size_t from = 0; from < path.size();) {
        const std::size_t to = std::min(path.find('/', from), path.size());
        const int next = makeFolder(folder, path.substr(from, to - from));
        close(folder);
        folder = next;
        from = to + 1;
    }
    return folder;
}

void closeFolder(int folder) {
    close(folder);
}

void makeFile(int folder, const std::string& name, Sequence& sequence) {
    constexpr std::uint64_t percent = 100;
    constexpr std::uint64_t emptyPercent = 50;
    constexpr std::uint64_t oneBlockPercent = 42;
    constexpr off_t block = 4096;
    const int file = openNewFile(folder, name);
    const std::uint64_t kind = sequence.below(percent);
    if (kind >= emptyPercent) {
        // Reserved, not written: the blocks count alike, and making the tree does not fill the memory with them.
        const off_t size = kind < emptyPercent + oneBlockPercent ? block : 2 * block;
        if (const int failure = posix_fallocate(file, 0, size - static_cast<off_t>(sequence.below(block / 2)));
            failure != 0) {
            errno = failure;
            fail("reserving the bytes of " + name);
        }
    }
    setDates(file, sequence.next());
    close(file);
}

void makeTextFile(int folder, const std::string& name, const std::string& text) {
    const int file = openNewFile(folder, name);
    if (::write(file, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
        fail("writing " + name);
    }
    setDates(file, text.size());
    close(file);
}

void dateBack(int folder) {
    setDates(folder, 0);
}

void fail(const std::string& what) {
    std::fprintf(stderr, "vesk-trees: %s: %s\n", what.c_str(), std::strerror(errno));
    std::exit(1);
}

}  // namespace vesk::bench

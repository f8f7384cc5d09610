#include "support/temporary_home.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include "platform/files/descriptor.h"
#include "platform/files/syncing.h"
#include "platform/world.h"
#include "temporary_folder.h"

namespace vesk::testing {

namespace {

namespace fs = std::filesystem;

Date stoppedClock;

constexpr const char* folderName = "vesk-test";

// A file system in memory where it has room: tests make many small files, and a disk may be busy with other work.
// TMPDIR has the last word, so that the tests can be run on any file system.
fs::path placeForTests() {
    const fs::path memory = "/dev/shm";
    const bool chosen = std::getenv("TMPDIR") != nullptr;  // NOLINT(concurrency-mt-unsafe): no other thread yet
    const fs::path disk = TemporaryFolder::systemPlace();
    if (chosen || !hasRoomForTests(memory)) {
        TemporaryFolder::removeLeftBehind(folderName, memory);
        return disk;
    }
    TemporaryFolder::removeLeftBehind(folderName, disk);
    return memory;
}

// Owns the temporary folder of this test program.
class TestWorld {
public:
    TestWorld() : place_(placeForTests()), folder_(folderName, place_) {
        if (folder_.path().empty()) {
            std::fprintf(stderr, "cannot make a folder for the tests in %s: %s; TMPDIR can name another place\n",
                         place_.c_str(), std::generic_category().message(errno).c_str());
            std::exit(EXIT_FAILURE);  // NOLINT(concurrency-mt-unsafe): no other thread yet
        }
        root_ = folder_.path() / "root";
        home_ = root_ / "Users/tester";
        setWorld(World::below(root_, home_));
    }

    void empty() const {
        removeTree(root_);
        requireSpace(folder_.path());
        fs::create_directories(home_);
    }

    const fs::path& folder() const { return folder_.path(); }
    const fs::path& root() const { return root_; }
    const fs::path& home() const { return home_; }

private:
    fs::path place_;
    TemporaryFolder folder_;
    fs::path root_;
    fs::path home_;
};

TestWorld& testWorld() {
    static TestWorld instance;
    return instance;
}

timespec timespecOf(Date date) {
    const auto count = date.time_since_epoch().count();
    constexpr std::int64_t perSecond = 1'000'000'000;
    const std::int64_t seconds = count >= 0 ? count / perSecond : -((-count + perSecond - 1) / perSecond);
    return timespec{static_cast<time_t>(seconds), static_cast<long>(count - seconds * perSecond)};
}

// Ends a test that cannot write what it needs.
[[noreturn]] void failToWrite(const fs::path& path) {
    const std::error_code failure(errno, std::generic_category());
    throw fs::filesystem_error("the test cannot write its files", path, failure);
}

}  // namespace

bool hasRoomForTests(const fs::path& place) {
    // For as many tests side by side as there are: the seven with the largest worlds, the demo's, take most of it.
    // Programs whose worlds are tiny say so.
    std::uintmax_t enough = std::uintmax_t{2} << 30U;
    if (const char* tiny = std::getenv("VESK_TEST_ROOM_MB")) {  // NOLINT(concurrency-mt-unsafe): no other thread yet
        enough = std::strtoull(tiny, nullptr, 10) << 20U;
    }
    std::error_code failure;
    const fs::space_info space = fs::space(place, failure);
    return !failure && access(place.c_str(), W_OK) == 0 && space.available >= enough;
}

void requireSpace(const fs::path& folder, std::uintmax_t bytes) {
    std::error_code failure;
    if (const fs::space_info space = fs::space(folder, failure); failure || space.available < bytes) {
        throw std::runtime_error("the disk that holds " + folder.string() + " has less than the " +
                                 std::to_string(bytes >> 20U) +
                                 " MB left that the test needs; TMPDIR can name another place");
    }
}

const fs::path& testFolder() {
    return testWorld().folder();
}

const fs::path& testRoot() {
    return testWorld().root();
}

const fs::path& testHome() {
    return testWorld().home();
}

Date secondsAgo(double seconds) {
    return now() - std::chrono::nanoseconds(std::llround(seconds * 1e9));
}

Date daysAgo(double days) {
    return secondsAgo(days * 86'400);
}

void writeFile(const fs::path& path, std::string_view content) {
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    file << content;
    file.close();
    if (!file.good()) {
        failToWrite(path);
    }
}

void makeFile(const fs::path& path, std::int64_t size) {
    writeFile(path, std::string(static_cast<std::size_t>(size), 'v'));
}

void makeFolder(const fs::path& path) {
    fs::create_directories(path);
}

void makeLink(const fs::path& path, const fs::path& target) {
    fs::create_directories(path.parent_path());
    fs::create_symlink(target, path);
}

bool homeKeepsOrderOfNames() {
    const Descriptor home(open(testHome().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return home && keepsOrderOfNames(home.get());
}

void setDates(const fs::path& path, Date modified, Date accessed) {
    const timespec times[] = {timespecOf(accessed), timespecOf(modified)};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0) << path;
}

void setDates(const fs::path& path, Date both) {
    setDates(path, both, both);
}

std::int64_t allocated(const fs::path& path) {
    struct stat found {};
    return lstat(path.c_str(), &found) == 0 ? static_cast<std::int64_t>(found.st_blocks) * 512 : -1;
}

TemporaryHome::TemporaryHome() {
    testWorld().empty();
}

TemporaryHome::~TemporaryHome() {
    setClock(nullptr);
}

void TemporaryHome::stopClock(Date at) {
    stoppedClock = at;
    setClock([] { return stoppedClock; });
}

}  // namespace vesk::testing

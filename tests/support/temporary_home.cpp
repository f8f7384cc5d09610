#include "support/temporary_home.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <system_error>

#include "platform/world.h"

namespace vesk::testing {

namespace {

namespace fs = std::filesystem;

Date stoppedClock;

// Folders that a test made unreadable must not stop the clearing up.
void makeRemovable(const fs::path& folder) {
    std::error_code ignored;
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (const fs::directory_entry& item : fs::directory_iterator(folder, ignored)) {
        if (item.is_directory(ignored) && !item.is_symlink(ignored)) {
            makeRemovable(item.path());
        }
    }
}

void removeTree(const fs::path& folder) {
    makeRemovable(folder);
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

// A file system in memory where there is one: tests make many small files, and a disk may be busy with other work.
// TMPDIR has the last word, so that the tests can be run on any file system.
fs::path placeForTests() {
    const fs::path memory = "/dev/shm";
    const bool chosen = std::getenv("TMPDIR") != nullptr;  // NOLINT(concurrency-mt-unsafe): no other thread yet
    return !chosen && access(memory.c_str(), W_OK) == 0 ? memory : fs::temp_directory_path();
}

// Owns the temporary folder of this test program.
class TestWorld {
public:
    TestWorld() {
        std::string pattern = (placeForTests() / "vesk-test-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            std::abort();
        }
        folder_ = fs::canonical(pattern);
        root_ = folder_ / "root";
        home_ = root_ / "Users/tester";
        setWorld(World::below(root_, home_));
    }
    ~TestWorld() { removeTree(folder_); }
    TestWorld(const TestWorld&) = delete;
    TestWorld& operator=(const TestWorld&) = delete;

    void empty() const {
        removeTree(root_);
        fs::create_directories(home_);
    }

    const fs::path& root() const { return root_; }
    const fs::path& home() const { return home_; }

private:
    fs::path folder_;
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

}  // namespace

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
    ASSERT_TRUE(file.good()) << path;
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

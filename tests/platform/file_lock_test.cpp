#include "platform/files/file_lock.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

#include "support/temporary_home.h"

namespace vesk {
namespace {

using testing::makeFile;
using testing::makeFolder;
using testing::makeLink;
using testing::testHome;
using State = FileLock::State;

class FileLockTest : public testing::TemporaryHome {
protected:
    static std::filesystem::path file() { return testHome() / "config/vesk/lock"; }
};

TEST_F(FileLockTest, IsHeldByOneAtATime) {
    FileLock second;
    {
        FileLock first;
        EXPECT_EQ(first.tryTake(file()), State::ours);
        EXPECT_EQ(second.tryTake(file()), State::anothers);
        EXPECT_EQ(second.tryTake(file()), State::anothers);
    }
    EXPECT_EQ(second.tryTake(file()), State::ours);
}

TEST_F(FileLockTest, MakesItsFileForItsOwnerAlone) {
    FileLock lock;
    ASSERT_EQ(lock.tryTake(file()), State::ours);
    struct stat found {};
    ASSERT_EQ(stat(file().c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777U, 0600U);
    ASSERT_EQ(stat(file().parent_path().c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 07777U, 0700U);
}

TEST_F(FileLockTest, LeavesAFileAsItIs) {
    makeFolder(file().parent_path());
    std::ofstream(file()) << "kept";
    FileLock lock;
    EXPECT_EQ(lock.tryTake(file()), State::ours);
    std::string text;
    std::ifstream(file()) >> text;
    EXPECT_EQ(text, "kept");
}

TEST_F(FileLockTest, GoesWithAProcessThatIsKilled) {
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t holder = fork();
    ASSERT_GE(holder, 0);
    if (holder == 0) {
        FileLock lock;
        const char state = lock.tryTake(file()) == State::ours ? 'y' : 'n';
        (void)!write(ready[1], &state, 1);
        pause();
        _exit(0);
    }
    char state = 0;
    ASSERT_EQ(read(ready[0], &state, 1), 1);
    EXPECT_EQ(state, 'y');
    FileLock lock;
    EXPECT_EQ(lock.tryTake(file()), State::anothers);
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_EQ(lock.tryTake(file()), State::ours);
    close(ready[0]);
    close(ready[1]);
}

// Whatever else is in the file's place, nothing blocks and nothing outside is touched.
TEST_F(FileLockTest, IsImpossibleWhereItsFileCannotBe) {
    makeFile(testHome() / "in the way");
    makeFolder(testHome() / "folder");
    ASSERT_EQ(mkfifo((testHome() / "fifo").c_str(), 0600), 0);
    makeLink(testHome() / "link", "target");
    makeFolder(testHome() / "unwritable");
    ASSERT_EQ(chmod((testHome() / "unwritable").c_str(), 0500), 0);
    for (const char* const place : {"in the way/lock", "folder", "fifo", "link", "unwritable/lock"}) {
        FileLock lock;
        EXPECT_EQ(lock.tryTake(testHome() / place), State::impossible) << place;
    }
    EXPECT_FALSE(std::filesystem::exists(testHome() / "target"));
}

}  // namespace
}  // namespace vesk

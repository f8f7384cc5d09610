// The folders in which tests and tools keep what they make: none outlives its process for long, and none is somebody
// else's.

#include "temporary_folder.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <exception>
#include <functional>
#include <string>
#include <utility>

#include "support/private_mounts.h"
#include "support/temporary_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::IsEmpty;

// Does the work in a process of its own, which then waits to be killed.
pid_t inAnotherProcess(const std::function<void()>& work) {
    int ends[2] = {};
    EXPECT_EQ(pipe(ends), 0);
    const pid_t process = fork();
    if (process == 0) {
        work();
        close(ends[1]);
        for (;;) {
            pause();
        }
    }
    close(ends[1]);
    char none = 0;
    EXPECT_EQ(read(ends[0], &none, 1), 0);  // until the work is done
    close(ends[0]);
    return process;
}

void killAndWait(pid_t process) {
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

class TemporaryFolderTest : public TemporaryHome {
protected:
    const fs::path place_ = testRoot() / "tmp";
    void SetUp() override { makeFolder(place_); }

    // As a run that fills it and never ends by itself.
    pid_t folderInUse() {
        return inAnotherProcess([this] {
            static const TemporaryFolder folder("vesk-trial", place_);
            makeFile(folder.path() / "refused/file");
            fs::permissions(folder.path() / "refused", fs::perms::none);
        });
    }
};

TEST_F(TemporaryFolderTest, IsGoneAfterItsEnd) {
    {
        const TemporaryFolder folder("vesk-trial", place_);
        EXPECT_EQ(folder.path().parent_path(), place_);
        makeFile(folder.path() / "file");
    }
    EXPECT_THAT(namesIn(place_), IsEmpty());
}

TEST_F(TemporaryFolderTest, OfAKilledProcessIsRemovedByTheNext) {
    killAndWait(folderInUse());
    EXPECT_EQ(namesIn(place_).size(), 1U);
    { const TemporaryFolder next("vesk-trial", place_); }
    EXPECT_THAT(namesIn(place_), IsEmpty());
}

TEST_F(TemporaryFolderTest, OfALivingProcessStays) {
    const pid_t living = folderInUse();
    const auto before = namesIn(place_);
    { const TemporaryFolder next("vesk-trial", place_); }
    EXPECT_EQ(namesIn(place_), before);
    killAndWait(living);
}

TEST_F(TemporaryFolderTest, OfSomebodyElsesOfThatNameStays) {
    makeFile(place_ / "vesk-trial-backup/file");
    makeFile(place_ / "elsewhere/.in-use-by-vesk");
    makeLink(place_ / "vesk-trial-linked", place_ / "elsewhere");
    TemporaryFolder::removeLeftBehind("vesk-trial", place_);
    EXPECT_TRUE(isThere(place_ / "vesk-trial-backup/file"));
    EXPECT_TRUE(isThere(place_ / "elsewhere/.in-use-by-vesk"));
}

TEST_F(TemporaryFolderTest, IsEmptyWhereNoneCanBeMade) {
    EXPECT_TRUE(TemporaryFolder("vesk-trial", place_ / "missing").path().empty());
}

// A container's /dev/shm has 64 MB unless somebody asks for more.
TEST_F(TemporaryFolderTest, MemoryIsUsedForTestsOnlyWhereItHasRoom) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    for (const auto& [size, enough] : {std::pair("size=64m", false), std::pair("size=3g", true)}) {
        ASSERT_TRUE(mountTemporaryFileSystem(place_, size));
        EXPECT_EQ(hasRoomForTests(place_), enough) << size;
        setenv("VESK_TEST_ROOM_MB", "16", 1);  // NOLINT(concurrency-mt-unsafe)
        EXPECT_TRUE(hasRoomForTests(place_)) << "for tiny worlds";
        unsetenv("VESK_TEST_ROOM_MB");  // NOLINT(concurrency-mt-unsafe)
        unmount(place_);
    }
    EXPECT_FALSE(hasRoomForTests(place_ / "missing"));
}

std::string sentenceOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const std::exception& failure) {
        return failure.what();
    }
    return "";
}

TEST_F(TemporaryFolderTest, AFullDiskEndsATestWithASentence) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    ASSERT_TRUE(mountTemporaryFileSystem(place_, "size=8m"));
    EXPECT_EQ(sentenceOf([&] { requireSpace(place_); }), "");
    EXPECT_THAT(sentenceOf([&] { makeFile(place_ / "large", 9 << 20); }), ::testing::HasSubstr("No space left"));
    EXPECT_THAT(sentenceOf([&] { requireSpace(place_); }), ::testing::HasSubstr("less than the 4 MB left"));
    unmount(place_);
}

}  // namespace
}  // namespace vesk

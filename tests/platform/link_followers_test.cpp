// The processes that follow links without setting their dates.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <fstream>
#include <string>
#include <thread>

#include "platform/files/files.h"
#include "support/private_mounts.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using testing::daysAgo;
using testing::makeFolder;
using testing::makeLink;
using testing::setDates;
using testing::testHome;

std::atomic<int> forks = 0;

class LinkFollowersTest : public testing::TemporaryHome {
protected:
    void SetUp() override {
        if (!testing::privateMountsAreAllowed()) {
            GTEST_SKIP() << "no mount namespaces here";
        }
        makeFolder(testHome() / "folder");
        makeLink(testHome() / "link", "folder");
        setDates(testHome() / "link", daysAgo(70), daysAgo(80));
        static const int counting = pthread_atfork([] { ++forks; }, nullptr, nullptr);
        ASSERT_EQ(counting, 0);
        forks = 0;
    }

    static void follow() {
        EXPECT_EQ(followLink(testHome() / "link"), std::filesystem::canonical(testHome() / "folder"));
    }

    // The only child of this thread.
    static pid_t child() {
        pid_t found = -1;
        std::ifstream("/proc/thread-self/children") >> found;
        return found;
    }

    static void expectOldDate() { EXPECT_LT(resourceValues(testHome() / "link")->contentAccessDate, daysAgo(75)); }
};

TEST_F(LinkFollowersTest, OneProcessFollowsAThousandLinks) {
    const auto ready = readyToFollowLinks();
    for (int i = 0; i < 1'000; ++i) {
        follow();
        EXPECT_EQ(followLink(testHome() / "missing"), std::nullopt);
    }
    // One that was not asked for a while ends by itself: on a busy machine there may be another.
    EXPECT_LE(forks.load(), 10);
    expectOldDate();
}

TEST_F(LinkFollowersTest, NoProcessIsLeftWhenNobodyFollowsLinks) {
    {
        const auto ready = readyToFollowLinks();
        const auto again = readyToFollowLinks();
        follow();
    }
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    follow();
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(LinkFollowersTest, OneThatEndedIsReplaced) {
    const auto ready = readyToFollowLinks();
    follow();
    const pid_t ended = child();
    ASSERT_GT(ended, 0);
    kill(ended, SIGKILL);
    follow();
    expectOldDate();
}

// A link may lead into a volume that does not answer.
TEST_F(LinkFollowersTest, OneThatHangsHoldsUpNobodyElse) {
    const auto ready = readyToFollowLinks();
    follow();
    const pid_t stopped = child();
    ASSERT_GT(stopped, 0);
    kill(stopped, SIGSTOP);
    std::atomic<int> done = 0;
    std::array<std::thread, 2> threads;
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            follow();
            ++done;
        });
    }
    while (done.load() == 0) {
        std::this_thread::yield();
    }
    kill(stopped, SIGCONT);
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST_F(LinkFollowersTest, HoldNothingOpenThatTheProcessHadOpen) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK), 0);
    const auto ready = readyToFollowLinks();
    follow();
    close(ends[1]);
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 0) << "the pipe has not ended";
    close(ends[0]);
}

}  // namespace
}  // namespace vesk

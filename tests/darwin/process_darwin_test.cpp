// Programs that are started by Darwin's rules for descriptors, of which it gives few.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "platform/system/descriptor_limit.h"
#include "platform/system/process.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using namespace testing;

class ProcessTest : public TemporaryHome {
protected:
    // Takes all descriptors that this process may have.
    static std::vector<int> takeAllDescriptors() {
        std::vector<int> taken;
        for (int descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC); descriptor >= 0;
             descriptor = open("/dev/null", O_RDONLY | O_CLOEXEC)) {
            taken.push_back(descriptor);
        }
        return taken;
    }
};

TEST_F(ProcessTest, AToolReadsTheStandardInputOfThisProcess) {
    writeFile(testHome() / "input", "said\n");
    const int kept = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 10);
    const int input = open((testHome() / "input").c_str(), O_RDONLY);
    dup2(input, STDIN_FILENO);
    close(input);
    const auto ended = runProcess("/bin/cat", {});
    kept >= 0 ? dup2(kept, STDIN_FILENO) : close(STDIN_FILENO);
    close(kept);
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->output, "said\n");
    EXPECT_EQ(ended->status, 0);
}

// Pipes get the numbers of the standard descriptors then, and one is handed over onto its own.
TEST_F(ProcessTest, AToolIsHeardWhereThisProcessHasNoStandardDescriptors) {
    const std::array kept = {fcntl(0, F_DUPFD_CLOEXEC, 10), fcntl(1, F_DUPFD_CLOEXEC, 10),
                             fcntl(2, F_DUPFD_CLOEXEC, 10)};
    for (int number = 0; number < 3; ++number) {
        close(number);
    }
    const auto ended = runProcess("/bin/sh", {"-c", "echo heard; ls /proc/self/fd | wc -l"});
    for (int number = 0; number < 3; ++number) {
        dup2(kept[static_cast<std::size_t>(number)], number);
        close(kept[static_cast<std::size_t>(number)]);
    }
    ASSERT_TRUE(ended);
    // What ls is given itself (output, errors), and the folder that it reads: no end of this process's own pipes.
    EXPECT_EQ(ended->output, "heard\n3\n");
}

TEST_F(ProcessTest, TheLimitOfDescriptorsIsRaisedAsFarAsItMayBe) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    ASSERT_EQ(before.rlim_cur, 256U);
    const rlim_t wanted = std::min<rlim_t>(before.rlim_max, 10240);
    EXPECT_EQ(raiseDescriptorLimit(), wanted);
    rlimit after{};
    getrlimit(RLIMIT_NOFILE, &after);
    EXPECT_EQ(after.rlim_cur, wanted);
    EXPECT_EQ(after.rlim_max, before.rlim_max);
    EXPECT_EQ(raiseDescriptorLimit(), wanted);
}

// A tool that is not run for that would be a card that vanishes.
TEST_F(ProcessTest, AToolWaitsForDescriptorsThatAWalkHolds) {
    std::vector<int> taken;
    std::atomic<bool> hasAll = false;
    // Started first: the checks of a sanitized build need a descriptor when a thread starts.
    std::thread walk([&] {
        while (!hasAll) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        for (const int descriptor : taken) {
            close(descriptor);
        }
    });
    taken = takeAllDescriptors();
    hasAll = true;
    const auto ended = runProcess("/bin/echo", {"there"});
    walk.join();
    ASSERT_TRUE(ended);
    EXPECT_EQ(ended->output, "there\n");
}

}  // namespace
}  // namespace vesk

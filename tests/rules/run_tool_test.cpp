// Running other programs.

#include "rules/run_tool.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <thread>

#include "rules/rule_test.h"

namespace vesk {
namespace {

using namespace testing;

class RunTool : public RuleTest {
protected:
    static ToolResult script(std::string_view body, const std::vector<std::string>& args = {}) {
        const std::filesystem::path path = testRoot() / "tool";
        writeScript(path, body);
        return runTool(path, args);
    }
    // Whether the system lists a process's descriptors.
    static bool hasProc() { return std::filesystem::exists("/proc/self/fd"); }
};

TEST_F(RunTool, TellsStatusAndOutput) {
    const ToolResult ended = script("echo one; echo two >&2; echo three; exit 7");
    EXPECT_EQ(ended.status, 7);
    EXPECT_EQ(ended.output, "one\nthree\n");
}

TEST_F(RunTool, HandsArgumentsOverAsTheyAre) {
    const ToolResult ended = script("for a in \"$@\"; do printf '<%s>' \"$a\"; done",
                                    {"plain", "two words", "", "$HOME", "*", "a\nb", "'\""});
    EXPECT_EQ(ended.output, "<plain><two words><><$HOME><*><a\nb><'\">");
    EXPECT_EQ(ended.status, 0);
}

TEST_F(RunTool, ThatCannotStartIsMinusOne) {
    makeFile(testRoot() / "not executable");
    makeFolder(testRoot() / "folder");
    makeLink(testRoot() / "dangling", testRoot() / "nowhere");
    writeFile(testRoot() / "no program", "neither binary nor script");
    std::filesystem::permissions(testRoot() / "no program", std::filesystem::perms::owner_all);
    for (const char* name : {"missing", "not executable", "folder", "dangling", "no program"}) {
        const ToolResult ended = runTool(testRoot() / name, {});
        EXPECT_EQ(ended.status, -1) << name;
        EXPECT_EQ(ended.output, "") << name;
    }
}

TEST_F(RunTool, TakesTenMegabytesOfOutput) {
    const ToolResult ended = script("head -c 10000000 /dev/zero | tr '\\0' x");
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output.size(), 10'000'000U);
    EXPECT_EQ(ended.output.find_first_not_of('x'), std::string::npos);
}

TEST_F(RunTool, EndedByASignalHasItsNumberAndKeepsTheOutput) {
    for (const int number : {SIGTERM, SIGKILL, SIGPIPE}) {
        const ToolResult ended = script("echo before; kill -" + std::to_string(number) + " $$; echo after");
        EXPECT_EQ(ended.status, number);
        EXPECT_EQ(ended.output, "before\n");
    }
}

TEST_F(RunTool, OutputIsMadeUtf8) {
    EXPECT_EQ(script("printf 'a\\342\\202b\\377c'").output,
              "a\xEF\xBF\xBD"
              "b\xEF\xBF\xBD"
              "c");
}

TEST_F(RunTool, ErrorOutputFindsSomebodyListening) {
    // If the pipe were closed, SIGPIPE would end this.
    const ToolResult ended = script("head -c 30000 /dev/zero >&2 && echo written");
    EXPECT_EQ(ended.output, "written\n");
    EXPECT_EQ(ended.status, 0);
}

TEST_F(RunTool, RunsWithNoSignalBlockedOrIgnored) {
    if (!hasProc()) {
        GTEST_SKIP() << "this system does not say which signals a process ignores";
    }
    struct sigaction before {};
    struct sigaction ignoring {};
    ignoring.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &ignoring, &before);
    sigset_t blocked;
    sigset_t maskBefore;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigaddset(&blocked, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &blocked, &maskBefore);
    // The mask's lowest 31 bits, without the two signals that the C library uses itself.
    const ToolResult ended =
        script("sed -n 's/^Sig\\(Blk\\|Ign\\):.*\\([0-9a-f]\\{8\\}\\)$/\\1 \\2/p' /proc/self/status");
    pthread_sigmask(SIG_SETMASK, &maskBefore, nullptr);
    sigaction(SIGPIPE, &before, nullptr);
    EXPECT_THAT(ended.output, ::testing::MatchesRegex("Blk 00000000\nIgn [08]0000000\n"));
}

TEST_F(RunTool, LeavesNoDescriptorOpen) {
    if (!hasProc()) {
        GTEST_SKIP() << "this system does not say which descriptors are open";
    }
    const auto openDescriptors = [] { return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {}); };
    const auto before = openDescriptors();
    script("echo once");
    runTool(testRoot() / "missing", {});
    EXPECT_EQ(openDescriptors(), before);
}

// A tool that inherited another tool's pipe would keep that tool's caller waiting for the end of its output.
TEST_F(RunTool, SharesNoDescriptorBetweenToolsThatRunAtOnce) {
    if (!hasProc()) {
        GTEST_SKIP() << "this system does not say which descriptors are open";
    }
    const std::string alone = runTool("/bin/ls", {"/proc/self/fd"}).output;
    ASSERT_NE(alone, "");
    std::atomic<int> wrong = 0;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 8; ++thread) {
        threads.emplace_back([&] {
            for (int turn = 0; turn < 25; ++turn) {
                const ToolResult ended = runTool("/bin/ls", {"/proc/self/fd"});
                wrong += ended.status != 0 || ended.output != alone ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

TEST_F(RunTool, WorksWithoutStandardDescriptors) {
    writeScript(testRoot() / "tool", "echo fine; echo bad >&2; exit 3");
    const int kept[] = {fcntl(0, F_DUPFD_CLOEXEC, 10), fcntl(1, F_DUPFD_CLOEXEC, 10), fcntl(2, F_DUPFD_CLOEXEC, 10)};
    for (int number = 0; number < 3; ++number) {
        close(number);
    }
    const ToolResult ended = runTool(testRoot() / "tool", {});
    for (int number = 0; number < 3; ++number) {
        dup2(kept[number], number);
        close(kept[number]);
    }
    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(ended.output, "fine\n");
}

}  // namespace
}  // namespace vesk

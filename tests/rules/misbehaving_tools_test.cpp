// Tools that hang, flood, write garbage or leave something behind.

#include <sys/resource.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <future>
#include <iterator>
#include <thread>

#include "platform/system/process.h"
#include "rules/rule_test.h"
#include "rules/rules.h"
#include "rules/run_tool.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::ExitedWithCode;
using ::testing::IsEmpty;
using ::testing::SizeIs;
namespace fs = std::filesystem;

// Generous, for busy machines; the tools themselves would run for an hour.
constexpr std::chrono::seconds patience(30);

bool appears(const fs::path& path) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!fs::exists(path)) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

// The number that a tool wrote into a file.
pid_t numberIn(const fs::path& path) {
    pid_t number = 0;
    std::ifstream(path) >> number;
    return number;
}

// Whether a process is gone, or a zombie that has not been reaped yet.
bool isDead(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/stat");
    std::string text((std::istreambuf_iterator<char>(status)), std::istreambuf_iterator<char>());
    const std::size_t name = text.rfind(") ");
    return name == std::string::npos || text[name + 2] == 'Z';
}

bool dies(pid_t process) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!isDead(process)) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

class MisbehavingTool : public RuleTest {
protected:
    static fs::path tool() { return testRoot() / "usr/bin/tmutil"; }

    static ToolResult script(std::string_view body) {
        writeScript(tool(), body);
        return runTool(tool(), {});
    }

    // Runs a tool with these commands, which write the number of a hanging process to `started` in its folder, and then
    // ends Vesk: that must kill the tool and that process.
    static void expectEndedWithTheProgram(const std::string& commands) {
        EXPECT_EXIT(endWhileRunning("cd '" + testRoot().string() + "'; " + commands), ExitedWithCode(0), "");
        EXPECT_TRUE(dies(numberIn(testRoot() / "started")));
    }

private:
    // Runs a tool with this body, ends all tools once `started` exists, and exits with 0 if that killed the tool. For a
    // process of its own, since it cannot start tools afterwards.
    [[noreturn]] static void endWhileRunning(const std::string& body) {
        writeScript(tool(), body);
        auto ended = std::async(std::launch::async, [] { return runTool(tool(), {}); });
        if (!appears(testRoot() / "started")) {
            std::_Exit(2);
        }
        endProcesses();
        if (ended.wait_for(patience) != std::future_status::ready || ended.get().status != SIGKILL) {
            std::_Exit(3);
        }
        std::_Exit(runTool("/bin/true", {}).status == -1 ? 0 : 4);
    }
};

TEST_F(MisbehavingTool, AFloodOfOutputIsReadToItsEndButNotKept) {
    // Two gigabytes in lines of 80 bytes: more memory than this process may use.
    struct rlimit before {};
    getrlimit(RLIMIT_AS, &before);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)  // which set aside terabytes themselves
    rlimit scarce = before;
    scarce.rlim_cur = rlim_t{1} << 30U;
    setrlimit(RLIMIT_AS, &scarce);
#endif
    const ToolResult ended = script("yes \"$(printf '%079d' 7)\" | head -c 2000000000; exit 5");
    setrlimit(RLIMIT_AS, &before);
    EXPECT_EQ(ended.status, 5);
    EXPECT_LE(ended.output.size(), mostOutputKept);
    EXPECT_GT(ended.output.size(), mostOutputKept - 80);
    EXPECT_EQ(ended.output.size() % 80, 0U) << "no line is cut";
    EXPECT_TRUE(ended.output.ends_with("7\n"));
}

TEST_F(MisbehavingTool, AnEndlessLineIsDroppedWhole) {
    const ToolResult ended = script("head -c 100000000 /dev/zero | tr '\\0' x");
    EXPECT_EQ(ended.status, 0);
    EXPECT_EQ(ended.output, "");
}

TEST_F(MisbehavingTool, AStampIsNeverCutShort) {
    // Blank lines up to 864 bytes before the limit, then stamps of 46 bytes each: the nineteenth does not fit.
    const std::size_t blank = mostOutputKept - 864;
    writeScript(tool(), "head -c " + std::to_string(blank) +
                            " /dev/zero | tr '\\0' '\\n'\n"
                            "yes com.apple.TimeMachine.2024-05-01-101530.local | head -n 30");
    const RuleResult result = run(rules::timeMachineSnapshots);
    ASSERT_THAT(result.cards, SizeIs(1));
    EXPECT_EQ(result.cards[0].snapshotIDs, std::vector<std::string>(18, "2024-05-01-101530"));
}

TEST_F(MisbehavingTool, OneLineOfManyPrefixesTakesNoTimeToSpeakOf) {
    writeScript(tool(), "yes com.apple.TimeMachine..local | head -c 30000000 | tr -d '\\n'");
    const auto started = std::chrono::steady_clock::now();
    const RuleResult result = run(rules::timeMachineSnapshots);
    EXPECT_LT(std::chrono::steady_clock::now() - started, patience);
    ASSERT_THAT(result.cards, SizeIs(1));
    EXPECT_THAT(result.cards[0].snapshotIDs, SizeIs(1));
}

TEST_F(MisbehavingTool, GarbageMakesNoCard) {
    writeScript(tool(), "head -c 5000000 /dev/urandom; exit 1");
    EXPECT_THAT(run(rules::timeMachineSnapshots).cards, IsEmpty());
}

TEST_F(MisbehavingTool, WhatItWroteBeforeASignalEndedItCounts) {
    writeScript(tool(), "echo com.apple.TimeMachine.2024-05-01-101530.local; kill -SEGV $$");
    const RuleResult result = run(rules::timeMachineSnapshots);
    ASSERT_THAT(result.cards, SizeIs(1));
    EXPECT_THAT(result.cards[0].snapshotIDs, ElementsAre("2024-05-01-101530"));
}

TEST_F(MisbehavingTool, ThatMayNotBeRunMakesNoCard) {
    writeFile(tool(), "#!/bin/sh\necho com.apple.TimeMachine.2024-05-01-101530.local\n");
    const RuleResult result = run(rules::timeMachineSnapshots);
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_FALSE(result.blocked);
}

TEST_F(MisbehavingTool, ThatClosesItsOutputIsWaitedFor) {
    const ToolResult ended = script("echo said; exec >&- 2>&-; sleep 0.3; exit 9");
    EXPECT_EQ(ended.status, 9);
    EXPECT_EQ(ended.output, "said\n");
}

TEST_F(MisbehavingTool, WhatItsOwnProgramsWriteBelongsToIt) {
    const ToolResult ended = script("(sleep 0.3; echo late) & echo early; exit 3");
    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(ended.output, "early\nlate\n");
}

TEST_F(MisbehavingTool, ThatHangsIsEndedWithTheProgram) {
    expectEndedWithTheProgram(
        "echo $$ >started.new; mv started.new started\n"
        "trap '' TERM INT HUP; while :; do sleep 3600; done");
}

TEST_F(MisbehavingTool, WhatItStartedIsEndedToo) {
    // The tool itself has ended; what it started keeps its output open.
    expectEndedWithTheProgram(
        "sleep 3600 & echo $! >started.new\n"
        "mv started.new started; kill -KILL $$");
}

TEST_F(MisbehavingTool, ThatClosedItsOutputAndHangsIsEndedToo) {
    expectEndedWithTheProgram(
        "exec >&- 2>&-; echo $$ >started.new\n"
        "mv started.new started; exec sleep 3600");
}

}  // namespace
}  // namespace vesk

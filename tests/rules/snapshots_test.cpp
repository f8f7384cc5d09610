// Local Time Machine snapshots, listed by a stand-in for the backup tool.

#include <ctime>

#include "rules/rule_test.h"
#include "rules/rules.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Snapshots : public RuleTest {
protected:
    static RuleResult listed(const std::string& output, const std::string& end = "exit 0") {
        writeFile(testRoot() / "output", output);
        writeScript(testRoot() / "usr/bin/tmutil",
                    "[ \"$#\" = 2 ] && [ \"$1\" = listlocalsnapshots ] && [ \"$2\" = / ] || exit 64\n"
                    "cat \"$(dirname \"$0\")/../../output\"\n" +
                        end + "\n");
        return run(rules::timeMachineSnapshots);
    }

    static std::string line(const std::string& stamp) { return "com.apple.TimeMachine." + stamp + ".local\n"; }

    static std::string stampOf(Date date) {
        const auto seconds = static_cast<std::time_t>(unixSeconds(date));
        std::tm local{};
        localtime_r(&seconds, &local);
        char stamp[32];
        EXPECT_GT(std::strftime(stamp, sizeof stamp, "%Y-%m-%d-%H%M%S", &local), 0U);
        return stamp;
    }
};

TEST_F(Snapshots, AreOneCardOfTheirStamps) {
    const RuleResult result = listed("Snapshots for disk /:\n" + line("2024-05-01-101530") + line("2024-05-01-111530"));
    ASSERT_EQ(result.cards.size(), 1U);
    const Card& card = result.cards[0];
    EXPECT_EQ(card.id, "snapshots");
    EXPECT_EQ(card.bucket, Bucket::safe);
    EXPECT_TRUE(card.selected);
    EXPECT_THAT(card.entries, IsEmpty());
    EXPECT_THAT(card.snapshotIDs, ElementsAre("2024-05-01-101530", "2024-05-01-111530"));
    EXPECT_EQ(card.summary, "2 hourly backup copies kept on this Mac (size varies).");
    EXPECT_FALSE(result.blocked);
}

TEST_F(Snapshots, OfOneIsACopy) {
    EXPECT_EQ(listed(line("2024-05-01-101530")).cards.at(0).summary,
              "1 hourly backup copy kept on this Mac (size varies).");
}

TEST_F(Snapshots, AreTakenFromEveryLineThatBeginsWithTheirPrefix) {
    const struct {
        const char* output;
        std::vector<std::string> stamps;
    } cases[] = {
        {"", {}},
        {"\n\n", {}},
        {"no snapshots\n", {}},
        {"Com.apple.TimeMachine.a.local\n", {}},
        {"x com.apple.TimeMachine.a.local\n", {}},
        {" \t com.apple.TimeMachine.a.local \t \n", {"a"}},
        {"\n\ncom.apple.TimeMachine.b.local\n\ncom.apple.TimeMachine.a.local", {"b", "a"}},
        {"com.apple.TimeMachine.a.local\ncom.apple.TimeMachine.a.local\n", {"a", "a"}},
        {"com.apple.TimeMachine.a\n", {"a"}},
        {"com.apple.TimeMachine.a.localb.local\n", {"ab"}},
        {"com.apple.TimeMachine.acom.apple.TimeMachine.b.Local\n", {"ab.Local"}},
        {"com.apple.TimeMachine.\xFF.local\n", {"\xEF\xBF\xBD"}},
        {"com.apple.TimeMachine.local\n", {"local"}},
    };
    for (const auto& [output, stamps] : cases) {
        const RuleResult result = listed(output);
        EXPECT_EQ(result.cards.size(), stamps.empty() ? 0U : 1U) << output;
        EXPECT_EQ(result.cards.empty() ? std::vector<std::string>() : result.cards[0].snapshotIDs, stamps) << output;
    }
}

TEST_F(Snapshots, AreAsOldAsTheNewestOne) {
    stopClock(std::chrono::floor<std::chrono::seconds>(now()));
    const struct {
        std::string output;
        double days;
    } cases[] = {
        {line(stampOf(daysAgo(0.003))), 1.0},
        {line(stampOf(daysAgo(3.5))), 3.5},
        {line(stampOf(daysAgo(9))) + line(stampOf(daysAgo(2.25))) + line(stampOf(daysAgo(40))), 2.25},
        {line("yesterday") + line(stampOf(daysAgo(4))), 4.0},
        {line(stampOf(daysAgo(-5))), 1.0},
    };
    for (const auto& [output, days] : cases) {
        // Exact even across a clock change: stamp and date are the same instant.
        EXPECT_NEAR(listed(output).cards.at(0).dormancyDays, days, 1e-9) << output;
    }
}

TEST_F(Snapshots, WhoseStampsCannotBeReadAreADayOld) {
    for (const char* stamp : {"2024-02-30-101530", "2024-13-01-101530", "2024-05-01-241530", "2024-05-01-106030",
                              "2024-05-01-101560", "2024-5-1-101530", "2024-05-01 101530", "2024-05-01-101530x",
                              "202a-05-01-101530", "2024-00-10-101530", "2024-05-00-101530", ""}) {
        const RuleResult result = listed(line(stamp));
        ASSERT_EQ(result.cards.size(), 1U) << stamp;
        EXPECT_EQ(result.cards[0].dormancyDays, 1.0) << stamp;
        EXPECT_THAT(result.cards[0].snapshotIDs, ElementsAre(stamp));
    }
}

TEST_F(Snapshots, AreUsedEvenIfTheToolFails) {
    EXPECT_EQ(listed(line("2024-05-01-101530"), "exit 1").cards.size(), 1U);
    EXPECT_EQ(listed(line("2024-05-01-101530"), "kill -9 $$").cards.size(), 1U);
}

TEST_F(Snapshots, GiveNoCardWithoutTheTool) {
    const RuleResult result = run(rules::timeMachineSnapshots);
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_FALSE(result.blocked);
}

}  // namespace
}  // namespace vesk

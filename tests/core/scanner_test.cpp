#include "core/scanner.h"

#include <gmock/gmock.h>

#include "support/temporary_home.h"

namespace vesk {
namespace {

using testing::daysAgo;
using testing::makeFile;
using testing::makeFolder;
using testing::testHome;

class ScannerTest : public testing::TemporaryHome {
protected:
    static Entry entryOf(std::int64_t size, std::string name = "item", std::optional<Date> lastUsed = {}) {
        return Entry{Uuid::random(), "/item", std::move(name), size, lastUsed};
    }
    static std::optional<Card> card(std::vector<Entry> entries, Bucket bucket = Bucket::safe) {
        return Scanner::makeCard("id", "title", "symbol", bucket, 0.5, 2.0, "summary", "why", std::move(entries));
    }
};

TEST_F(ScannerTest, HomeIsTheWorlds) {
    EXPECT_EQ(Scanner::home(), testHome());
}

TEST_F(ScannerTest, CardCarriesWhatTheRuleSays) {
    const std::optional<Card> made = card({entryOf(1)});
    ASSERT_TRUE(made);
    EXPECT_EQ(made->id, "id");
    EXPECT_EQ(made->title, "title");
    EXPECT_EQ(made->symbol, "symbol");
    EXPECT_EQ(made->confidence, 0.5);
    EXPECT_EQ(made->risk, 2.0);
    EXPECT_EQ(made->summary, "summary");
    EXPECT_EQ(made->why, "why");
    EXPECT_TRUE(made->snapshotIDs.empty());
}

TEST_F(ScannerTest, NoCardWithoutASize) {
    EXPECT_FALSE(card({}));
    EXPECT_FALSE(card({entryOf(0), entryOf(0)}));
    EXPECT_FALSE(card({entryOf(-1)}));
}

TEST_F(ScannerTest, EntriesAreLargestFirstWithoutEmptyOnes) {
    const std::optional<Card> made = card({entryOf(5), entryOf(0), entryOf(9)});
    ASSERT_TRUE(made);
    ASSERT_EQ(made->entries.size(), 2U);
    EXPECT_EQ(made->entries[0].size, 9);
    EXPECT_EQ(made->entries[1].size, 5);
}

TEST_F(ScannerTest, EqualEntriesKeepTheirOrder) {
    const std::optional<Card> made = card({entryOf(7, "a"), entryOf(9, "b"), entryOf(7, "c"), entryOf(7, "d")});
    ASSERT_TRUE(made);
    std::string names;
    for (const Entry& entry : made->entries) {
        names += entry.name;
    }
    EXPECT_EQ(names, "bacd");
}

TEST_F(ScannerTest, DormancyCountsFromTheLatestUse) {
    stopClock(now());
    EXPECT_EQ(card({entryOf(1)})->dormancyDays, 30.0);
    EXPECT_EQ(card({entryOf(1, "a", daysAgo(0.5))})->dormancyDays, 1.0);
    EXPECT_EQ(card({entryOf(1, "a", daysAgo(-3))})->dormancyDays, 1.0);
    EXPECT_NEAR(card({entryOf(1, "a", daysAgo(45))})->dormancyDays, 45.0, 1e-6);
    EXPECT_NEAR(card({entryOf(1, "a", daysAgo(90)), entryOf(1), entryOf(1, "b", daysAgo(45.25))})->dormancyDays, 45.25,
                1e-6);
    // An entry dropped for its size does not count.
    EXPECT_NEAR(card({entryOf(1, "a", daysAgo(90)), entryOf(0, "b", daysAgo(2))})->dormancyDays, 90, 1e-6);
}

TEST_F(ScannerTest, OnlySafeCardsStartTicked) {
    EXPECT_TRUE(card({entryOf(1)}, Bucket::safe)->selected);
    EXPECT_FALSE(card({entryOf(1)}, Bucket::smart)->selected);
    EXPECT_FALSE(card({entryOf(1)}, Bucket::personal)->selected);
}

TEST_F(ScannerTest, FixedKeepsTheOrderOfWhatExists) {
    makeFile(testHome() / "b/file", 4096);
    makeFolder(testHome() / "a");
    const FixedLocation locations[] = {{"b", "second"}, {"missing", "none"}, {"a", "first"}};
    const auto tracker = std::make_shared<Tracker>();
    Probe probe(tracker);
    const std::vector<Entry> entries = Scanner::fixed(probe, locations);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].name, "second");
    EXPECT_EQ(entries[0].url, testHome() / "b");
    EXPECT_EQ(entries[0].size, testing::allocated(testHome() / "b/file"));
    EXPECT_EQ(entries[1].name, "first");
    EXPECT_EQ(entries[1].size, 0);
}

TEST_F(ScannerTest, FixedLeavesTheTrackerAloneForWhatIsMissing) {
    const auto tracker = std::make_shared<Tracker>();
    Probe probe(tracker);
    const FixedLocation locations[] = {{"missing", "none"}};
    EXPECT_TRUE(Scanner::fixed(probe, locations).empty());
    EXPECT_EQ(tracker->updates(), 0);
}

TEST_F(ScannerTest, PrettyIsTheVendorOfAKnownPrefix) {
    const struct {
        const char* identifier;
        const char* shown;
    } cases[] = {
        {"com.acme.Editor", "Acme"},
        {"org.example", "org.example"},
        {"org.example.tool", "Example"},
        {"uk.example.tool", "uk.example.tool"},
        {"COM.example.tool", "Example"},
        {"com..example.tool", "Example"},
        {"com..example", "com..example"},
        {"io.github.someApp.helper", "Github"},
        {"net.x.y", "X"},
        {"dev.mAIN.y", "MAIN"},
        {"app.a.b", "A"},
        {"com.\xC3\xA9lan.tool", "\xC3\x89lan"},
        {"Google", "Google"},
        {"", ""},
        {"...", "..."},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Scanner::pretty(c.identifier), c.shown) << c.identifier;
    }
}

TEST_F(ScannerTest, NormalizeKeepsLettersAndNumbersInLowerCase) {
    const struct {
        const char* text;
        const char* normalized;
    } cases[] = {
        {"My App-2 (Beta)", "myapp2beta"},
        {"com.example.tool", "comexampletool"},
        {"", ""},
        {"-_. ", ""},
        {"\xC3\x84pfel", "\xC3\xA4pfel"},
        {"A\xCC\x88pfel", "\xC3\xA4pfel"},                   // decomposed, as macOS stores names
        {"\xD9\xA3\xE4\xB8\x89", "\xD9\xA3\xE4\xB8\x89"},    // an Arabic digit and a Chinese numeral
        {"x\xC2\xB2\xE2\x85\xA7", "x\xC2\xB2\xE2\x85\xB7"},  // a superscript and a Roman numeral
        {"\xF0\x9F\x98\x80"
         "a",
         "a"},
        {"-\xCC\x88x", "x"},  // the mark is removed with its hyphen
        {"\xE2\x93\x90", "\xE2\x93\x90"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Scanner::normalize(c.text), c.normalized) << c.text;
    }
}

TEST_F(ScannerTest, NormalizeReadsNamesThatAreNotUtf8) {
    EXPECT_EQ(Scanner::normalize("A\xFF\xFE"
                                 "b"),
              "ab");
}

}  // namespace
}  // namespace vesk

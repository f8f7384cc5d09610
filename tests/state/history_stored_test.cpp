// The stored history compared with the one in memory: stored by another program, by an older version, or on a failing
// disk.

#include <gmock/gmock.h>

#include <ctime>

#include "state/history_codec.h"
#include "state/store_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class HistoryStoredTest : public StoreHome {
protected:
    HistoryStoredTest() { offerItemsOf(testHome() / "Junk"); }

    static void store(const std::string& bytes) { ASSERT_TRUE(Preferences().setData("vesk.history", bytes)); }
    static std::string stored() { return Preferences().data("vesk.history").value_or("nothing"); }
    static std::vector<std::string> idsOf(const std::vector<HistoryEntry>& entries) {
        std::vector<std::string> ids;
        for (const HistoryEntry& entry : entries) {
            ids.push_back(entry.id.text());
        }
        return ids;
    }
    static std::vector<std::string> storedIds() {
        return idsOf(decodeHistory(stored()).value_or(std::vector<HistoryEntry>()));
    }
    static std::string entryWithDate(const std::string& date) {
        return "{\"id\":\"0F1E2D3C-4B5A-4978-8695-A4B3C2D1E0FF\",\"date\":" + date +
               ",\"bytes\":1,\"preview\":false,\"titles\":[],\"moves\":[],\"snapshotsRemoved\":0,\"undone\":false}";
    }
    static std::string dateShown(Store& store) {
        const HistoryList& list = *store.property("history").value<HistoryList*>();
        return list.data(list.index(0), list.roleNames().key("dateText", -1)).toString().toStdString();
    }
    // Cleans one new item with this store.
    void cleanWith(std::unique_ptr<Store>& vesk, const std::string& name) {
        store_.swap(vesk);
        writeFile(testHome() / "Junk" / name, name);
        scan();
        clean();
        store_.swap(vesk);
    }
    void undoWith(std::unique_ptr<Store>& vesk, std::size_t row) {
        store_.swap(vesk);
        undo(row);
        store_.swap(vesk);
    }
    static void setWritable(bool writable) {
        const auto readable = fs::perms::owner_read | fs::perms::owner_exec;
        fs::permissions(testHome() / ".config/vesk", writable ? fs::perms::owner_all : readable);
    }
};

TEST_F(HistoryStoredTest, ADateOutsideTheClocksRangeCostsNoHistory) {
    for (const char* date : {"-9.3e9", "8.3e9", "-63145526400.5", "1e+300", "-1e300"}) {
        const std::string text = "[" + entryWithDate(date) + "]";
        store(text);
        Store& vesk = makeStore();
        ASSERT_EQ(vesk.history().size(), 1U) << date;
        vesk.saveHistory();
        EXPECT_THAT(stored(), HasSubstr("0F1E2D3C")) << date;
        EXPECT_EQ(decodeHistory(stored()), decodeHistory(text));
    }
}

TEST_F(HistoryStoredTest, ADateOutsideTheClocksRangeIsShownAsWellAsCanBe) {
    setenv("TZ", "UTC", 1);
    tzset();
    const struct {
        const char* date;
        const char* shown;
    } cases[] = {
        {"0", "Jan 1, 2001 at 12:00 AM"},    {"-9.3e9", "Apr 19, 1706 at 2:40 AM"},
        {"8.3e9", "Jan 7, 2264 at 7:33 PM"}, {"252423993599", "Dec 31, 9999 at 11:59 PM"},
        {"1e300", "Unknown date"},           {"-1e300", "Unknown date"},
    };
    for (const auto& c : cases) {
        store("[" + entryWithDate(c.date) + "]");
        EXPECT_EQ(dateShown(makeStore()), c.shown) << c.date;
    }
    unsetenv("TZ");
    tzset();
}

TEST_F(HistoryStoredTest, ASecondVeskDoesNotReplaceTheRunsOfTheFirst) {
    auto first = std::make_unique<Store>(sources_);
    auto second = std::make_unique<Store>(sources_);
    cleanWith(first, "a");
    cleanWith(second, "b");
    EXPECT_EQ(storedIds().size(), 2U) << "the run of the first is gone";
    EXPECT_EQ(second->history().size(), 2U);
    cleanWith(first, "c");
    EXPECT_EQ(storedIds().size(), 3U);
    EXPECT_EQ(storedIds(), idsOf(first->history())) << "newest first";
    EXPECT_EQ(first->history()[1].moves.at(0).original, testHome() / "Junk/b");
}

TEST_F(HistoryStoredTest, AnUndoOfTheOtherVeskIsTakenOver) {
    auto first = std::make_unique<Store>(sources_);
    cleanWith(first, "a");
    auto second = std::make_unique<Store>(sources_);
    undoWith(second, 0);
    fs::remove(testHome() / "Junk/a");
    cleanWith(first, "b");
    ASSERT_EQ(first->history().size(), 2U);
    EXPECT_TRUE(first->history()[1].undone);
    EXPECT_TRUE(decodeHistory(stored())->at(1).undone) << "restored, and now it says otherwise";
}

TEST_F(HistoryStoredTest, AnUndoOfThisVeskWinsOverWhatIsStored) {
    auto first = std::make_unique<Store>(sources_);
    cleanWith(first, "a");
    auto second = std::make_unique<Store>(sources_);
    cleanWith(second, "b");  // stores the run of "a" as not undone
    undoWith(first, 0);
    ASSERT_EQ(first->history().size(), 2U);
    EXPECT_TRUE(first->history()[1].undone);
    EXPECT_TRUE(decodeHistory(stored())->at(1).undone);
    EXPECT_FALSE(decodeHistory(stored())->at(0).undone);
}

TEST_F(HistoryStoredTest, AFirstSaveThatSaidItFailedAddsNoRunTwice) {
    Preferences().setBoolean("vesk.preview", false);
    makeStore();
    setWritable(false);
    cleanWith(store_, "a");
    // The save took effect nevertheless, as it may on a network disk.
    setWritable(true);
    store(encodeHistory(store_->history()));
    cleanWith(store_, "b");
    EXPECT_EQ(store_->history().size(), 2U);
    EXPECT_EQ(storedIds(), idsOf(store_->history()));
}

TEST_F(HistoryStoredTest, MergedRunsAreNoMoreThanFifty) {
    auto first = std::make_unique<Store>(sources_);
    std::vector<HistoryEntry> others(60);
    for (HistoryEntry& other : others) {
        other = decodeHistory("[" + entryWithDate("1") + "]")->front();
        other.id = Uuid::random();
    }
    store(encodeHistory(others));
    cleanWith(first, "a");
    ASSERT_EQ(first->history().size(), 50U);
    EXPECT_EQ(first->history()[0].moves.at(0).original, testHome() / "Junk/a");
    EXPECT_EQ(storedIds(), idsOf(first->history()));
}

}  // namespace
}  // namespace vesk

// The history of a Store: loading, saving, its limit, and its rows.

#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <ctime>

#include "state/history.h"
#include "state/history_codec.h"
#include "state/running_work.h"
#include "state/store_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::IsEmpty;

class HistoryTest : public StoreHome {
protected:
    static HistoryEntry numbered(std::int64_t number) {
        HistoryEntry entry;
        entry.date = historyDate(dateFromUnix(1'700'000'000 + number, 0));
        entry.bytes = number;
        entry.titles = {"Run " + std::to_string(number)};
        return entry;
    }
    // This many runs, the newest with the highest number.
    static std::vector<HistoryEntry> runs(std::int64_t count) {
        std::vector<HistoryEntry> entries;
        for (std::int64_t number = count; number > 0; --number) {
            entries.push_back(numbered(number));
        }
        return entries;
    }
    static void storeHistory(const std::string& bytes) { ASSERT_TRUE(Preferences().setData("vesk.history", bytes)); }
    static std::string stored() { return Preferences().data("vesk.history").value_or("nothing"); }
    static HistoryList& listOf(Store& store) { return *store.property("history").value<HistoryList*>(); }
    static QVariant valueAt(Store& store, int row, const char* role) {
        const HistoryList& list = listOf(store);
        const int number = list.roleNames().key(role, -1);
        return list.data(list.index(row), number);
    }
    void cleanSomething(const std::string& name) {
        writeFile(testHome() / "Junk" / name, name);
        scan();
        clean();
    }
};

TEST_F(HistoryTest, StartsEmpty) {
    EXPECT_THAT(makeStore().history(), IsEmpty());
    EXPECT_EQ(stored(), "nothing");
}

TEST_F(HistoryTest, LoadsWhatIsStoredAsItStands) {
    const std::vector<HistoryEntry> entries = runs(60);
    storeHistory(encodeHistory(entries));
    EXPECT_EQ(makeStore().history(), entries) << "no entry is dropped before something is saved";
    EXPECT_EQ(stored(), encodeHistory(entries));
}

// Loading one with a million moves takes half a second: the window must not wait for it.
class LargeHistoryTest : public HistoryTest {
protected:
    LargeHistoryTest() {
        for (HistoryEntry& entry : entries_) {
            entry.moves.assign(20'000, {"/home/tester/.cache/app", "/home/tester/.local/share/Trash/files/app", 1});
        }
        storeHistory(encodeHistory(entries_));
    }

    std::vector<HistoryEntry> entries_ = runs(3);
};

TEST_F(LargeHistoryTest, ArrivesWhileTheEventLoopRuns) {
    HistoryList& list = listOf(makeStore());
    EXPECT_EQ(list.count(), 0);
    EXPECT_TRUE(list.isLoading());
    ASSERT_TRUE(waitFor([&] { return list.count() != 0; }));
    EXPECT_FALSE(list.isLoading());
    EXPECT_EQ(list.entries(), entries_);
    EXPECT_EQ(store_->history(), entries_);
}

TEST_F(LargeHistoryTest, IsThereForWhoeverAsks) {
    EXPECT_EQ(makeStore().history(), entries_);
    makeStore().undo(entries_[1].id);
    EXPECT_TRUE(store_->busy());
    makeStore().saveHistory();
    EXPECT_EQ(stored(), encodeHistory(entries_));
}

TEST_F(LargeHistoryTest, GetsARunThatEndsBeforeItIsLoaded) {
    Preferences preferences;
    History history(preferences);
    history.add(numbered(9));
    history.save();
    entries_.insert(entries_.begin(), numbered(9));
    entries_.front().id = history.entries().front().id;
    EXPECT_EQ(history.entries(), entries_);
    EXPECT_EQ(stored(), encodeHistory(entries_));
}

TEST_F(LargeHistoryTest, MayLeadToItsStoresEndWhenAnUndoAsksForIt) {
    const HistoryList& list = listOf(makeStore());
    EXPECT_TRUE(list.isLoading());
    QObject::connect(&list, &HistoryList::countChanged, [this] { store_.reset(); });
    store_->undo(entries_[0].id);
    EXPECT_EQ(store_, nullptr);
}

TEST_F(LargeHistoryTest, MayArriveAfterItsStoreIsGone) {
    makeStore();
    store_.reset();
    ASSERT_TRUE(waitFor([] { return runningWork() == 0; }));
}

TEST_F(HistoryTest, AnUnreadableOneStartsEmptyAndStaysUntilTheNextSave) {
    std::string broken = encodeHistory(runs(2));
    const std::string key = "\"undone\":false";
    broken.replace(broken.rfind(key) - 1, key.size() + 1, "");
    for (const std::string& bytes : {broken, std::string("{"), std::string()}) {
        storeHistory(bytes);
        Store& store = makeStore();
        EXPECT_THAT(store.history(), IsEmpty());
        EXPECT_EQ(stored(), bytes);
        store.saveHistory();
        EXPECT_EQ(stored(), "[]");
    }
}

TEST_F(HistoryTest, KeepsTheFiftyNewest) {
    const std::vector<HistoryEntry> fifty = runs(50);
    storeHistory(encodeHistory(fifty));
    offerItemsOf(testHome() / "Junk");
    Store& store = makeStore();
    store.saveHistory();
    EXPECT_EQ(store.history(), fifty) << "fifty are not too many";
    EXPECT_EQ(decodeHistory(stored()), fifty);
    cleanSomething("a");
    ASSERT_EQ(store.history().size(), 50U);
    EXPECT_EQ(store.history()[1].bytes, 50);
    EXPECT_EQ(store.history()[49].bytes, 2) << "the oldest is gone";
    EXPECT_EQ(decodeHistory(stored())->size(), 50U);
}

TEST_F(HistoryTest, FiftyOneRunsLeaveFifty) {
    offerItemsOf(testHome() / "Junk");
    Store& store = makeStore();
    for (int run = 1; run <= 51; ++run) {
        cleanSomething("run" + std::to_string(run));
    }
    ASSERT_EQ(store.history().size(), 50U);
    EXPECT_EQ(store.history()[0].moves.at(0).original, testHome() / "Junk/run51");
    EXPECT_EQ(store.history()[49].moves.at(0).original, testHome() / "Junk/run2");
}

TEST_F(HistoryTest, ASaveThatFailsIsNotSeen) {
    const std::vector<HistoryEntry> before = runs(1);
    storeHistory(encodeHistory(before));
    offerItemsOf(testHome() / "Junk");
    Store& store = makeStore();
    fs::permissions(testHome() / ".config/vesk", fs::perms::owner_read | fs::perms::owner_exec);
    cleanSomething("a");
    EXPECT_EQ(store.history().size(), 2U);
    EXPECT_TRUE(store.celebration());
    EXPECT_EQ(stored(), encodeHistory(before)) << "the old value stays";
}

TEST_F(HistoryTest, ASaveThatFailedIsMadeUpForAtTheEnd) {
    storeHistory(encodeHistory(runs(1)));
    offerItemsOf(testHome() / "Junk");
    makeStore();
    fs::permissions(testHome() / ".config/vesk", fs::perms::owner_read | fs::perms::owner_exec);
    cleanSomething("a");
    fs::permissions(testHome() / ".config/vesk", fs::perms::owner_all);
    const std::vector<HistoryEntry> shown = store_->history();
    store_.reset();
    EXPECT_EQ(stored(), encodeHistory(shown));
}

TEST_F(HistoryTest, OneThatCannotBeReadNowIsNeverReplaced) {
    const fs::path file = testHome() / ".config/vesk/vesk.history";
    const std::vector<HistoryEntry> older = runs(2);
    storeHistory(encodeHistory(older));
    offerItemsOf(testHome() / "Junk");
    fs::permissions(file, fs::perms::none);
    Store& store = makeStore();
    EXPECT_THAT(store.history(), IsEmpty());
    cleanSomething("a");
    EXPECT_EQ(store.history().size(), 1U);
    fs::permissions(file, fs::perms::owner_all);
    EXPECT_EQ(stored(), encodeHistory(older));

    cleanSomething("b");
    EXPECT_EQ(stored(), encodeHistory(store.history()));
    ASSERT_EQ(store.history().size(), 4U) << "it has been read meanwhile, and is the older part";
    EXPECT_EQ(store.history()[2], older[0]);
    EXPECT_EQ(listOf(store).rowCount(), 4);
}

TEST_F(HistoryTest, ATitleThatIsNotUtf8StopsNoSave) {
    writeFile(testHome() / "Junk/a", "a");
    offer([](Probe& probe) {
        return std::vector<Card>{cardOf(probe, "odd", "Odd \xFF title", itemsOf(testHome() / "Junk"))};
    });
    Store& store = scannedStore();
    clean();
    EXPECT_EQ(store.history()[0].titles[0], "Odd \xFF title");
    ASSERT_TRUE(decodeHistory(stored()));
    EXPECT_EQ(decodeHistory(stored())->at(0).titles[0], "Odd \xEF\xBF\xBD title");
    EXPECT_EQ(valueAt(store, 0, "titles").toString(), QStringLiteral("Odd \uFFFD title"));
}

TEST_F(HistoryTest, TheRowsSayWhatTheViewsShow) {
    setenv("TZ", "America/New_York", 1);
    tzset();
    HistoryEntry entry = numbered(1);
    entry.date = historyDate(dateFromUnix(1'645'514'520, 0));
    entry.bytes = 1'234'567'898;
    entry.titles = {"App caches", "Old downloads"};
    entry.snapshotsRemoved = 2;
    entry.undone = true;
    HistoryEntry preview;
    preview.preview = true;
    preview.date = historyDate(dateFromUnix(1'645'514'520 + 43'200, 0));
    storeHistory(encodeHistory({entry, preview}));
    Store& store = makeStore();
    EXPECT_EQ(listOf(store).count(), 2);
    EXPECT_EQ(valueAt(store, 0, "entryId").toString().toStdString(), entry.id.text());
    EXPECT_EQ(valueAt(store, 0, "bytesText").toString(), "1.23 GB");
    EXPECT_EQ(valueAt(store, 0, "preview").toBool(), false);
    EXPECT_EQ(valueAt(store, 0, "titles").toString(), "App caches, Old downloads");
    EXPECT_EQ(valueAt(store, 0, "dateText").toString(), "Feb 22, 2022 at 2:22 AM");
    EXPECT_EQ(valueAt(store, 0, "snapshotsRemoved").toInt(), 2);
    EXPECT_EQ(valueAt(store, 0, "undone").toBool(), true);
    EXPECT_EQ(valueAt(store, 1, "preview").toBool(), true);
    EXPECT_EQ(valueAt(store, 1, "bytesText").toString(), "Zero KB");
    EXPECT_EQ(valueAt(store, 1, "titles").toString(), "");
    EXPECT_EQ(valueAt(store, 1, "dateText").toString(), "Feb 22, 2022 at 2:22 PM");
    unsetenv("TZ");
    tzset();
}

TEST_F(HistoryTest, RowsChangeOneByOne) {
    storeHistory(encodeHistory(runs(50)));
    offerItemsOf(testHome() / "Junk");
    Store& store = makeStore();
    HistoryList& list = listOf(store);
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    std::vector<std::string> steps;
    const auto note = [&](const char* what) {
        return [&steps, what](const QModelIndex&, int first, int last) {
            steps.push_back(what + std::to_string(first) + "-" + std::to_string(last));
        };
    };
    QObject::connect(&list, &HistoryList::rowsInserted, note("in "));
    QObject::connect(&list, &HistoryList::rowsRemoved, note("out "));
    QObject::connect(&list, &HistoryList::modelReset, [&] { steps.emplace_back("reset"); });
    QObject::connect(&list, &HistoryList::dataChanged, [&](const QModelIndex& first, const QModelIndex& last) {
        steps.push_back("changed " + std::to_string(first.row()) + "-" + std::to_string(last.row()));
    });
    cleanSomething("a");
    undo(0);
    EXPECT_THAT(steps, ::testing::ElementsAre("in 0-0", "out 50-50", "changed 0-0"));
}

}  // namespace
}  // namespace vesk

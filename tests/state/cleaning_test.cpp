// Cleans of a Store: what reaches the Trash, what is recorded and what the user is told.

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QVariantMap>
#include <limits>

#include "state/cleaning_fixture.h"
#include "support/file_names.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(CleaningTest, MovesEveryEntryAndRecordsIt) {
    writeFile(junk() / "a", std::string(4096, 'a'));
    writeFile(junk() / "b/inside", std::string(8192, 'b'));
    offerItemsOf(junk());
    Store& store = scannedStore();
    const std::int64_t total = store.selectedBytes();
    ASSERT_GT(total, 0);
    const std::int64_t sizeOfFirst = store.cards()[0].entries[0].size;
    clean();
    EXPECT_THAT(namesIn(junk()), IsEmpty());
    EXPECT_EQ(contentOf(trashFiles() / "b/inside"), std::string(8192, 'b'));

    ASSERT_EQ(store.history().size(), 1U);
    const HistoryEntry& entry = store.history()[0];
    EXPECT_EQ(entry.bytes, total);
    EXPECT_FALSE(entry.preview);
    EXPECT_FALSE(entry.undone);
    EXPECT_EQ(entry.snapshotsRemoved, 0);
    EXPECT_NEAR(entry.date, historyDate(now()), 5);
    EXPECT_THAT(entry.titles, ElementsAre("Title of junk"));
    EXPECT_THAT(entry.moves, ElementsAre(HistoryEntry::Move{junk() / "a", trashFiles() / "a", sizeOfFirst},
                                         HistoryEntry::Move{junk() / "b", trashFiles() / "b", total - sizeOfFirst}));
    EXPECT_EQ(storedHistory().size(), 1U);
    EXPECT_EQ(storedHistory()[0].moves, entry.moves);

    ASSERT_TRUE(store.celebration());
    EXPECT_EQ(store.celebration()->bytes, total);
    EXPECT_FALSE(store.celebration()->preview);
    EXPECT_EQ(store.celebration()->snapshots, 0);
    EXPECT_EQ(store.celebration()->failures, 0);
    EXPECT_TRUE(store.cards().empty()) << "the scan that follows finds nothing any more";
    EXPECT_FALSE(store.notice());
}

TEST_F(CleaningTest, TellsThingsInTheirOrder) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    Store& store = scannedStore();
    std::vector<std::string> told;
    const auto note = [&](const char* what) { return [&told, what] { told.emplace_back(what); }; };
    QObject::connect(&store, &Store::cleaningChanged, note("cleaning"));
    QObject::connect(&store, &Store::celebrationChanged, note("celebration"));
    QObject::connect(&store, &Store::phaseChanged, note("phase"));
    const auto* history = store.property("history").value<HistoryList*>();
    ASSERT_NE(history, nullptr);
    QObject::connect(history, &HistoryList::rowsInserted, note("history"));
    clean();
    EXPECT_THAT(told, ElementsAre("cleaning", "history", "cleaning", "celebration", "phase", "phase"));
}

TEST_F(CleaningTest, NothingTickedOrBusyIsNoClean) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    Store& store = makeStore();
    store.performClean();
    EXPECT_FALSE(store.cleaning()) << "no card at all";
    scan();
    store.setSelected("junk", false);
    store.performClean();
    EXPECT_FALSE(store.cleaning()) << "none ticked";
    store.setSelected("junk", true);
    store.scan();
    store.performClean();
    EXPECT_FALSE(store.cleaning()) << "while scanning";
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    store.performClean();
    EXPECT_TRUE(store.cleaning());
    store.performClean();
    store.scan();
    EXPECT_NE(store.phase(), Store::Phase::scanning) << "while cleaning";
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    EXPECT_EQ(store.history().size(), 1U);
}

TEST_F(CleaningTest, EverythingGoneIsOnlyFailures) {
    writeFile(junk() / "a", "a");
    writeFile(junk() / "b", "b");
    offerItemsOf(junk());
    Store& store = scannedStore();
    fs::remove_all(junk());
    int phases = 0;
    QObject::connect(&store, &Store::phaseChanged, [&] { ++phases; });
    clean();
    EXPECT_EQ(store.history()[0].bytes, 0);
    EXPECT_THAT(store.history()[0].moves, IsEmpty());
    EXPECT_EQ(store.celebration()->bytes, 0);
    EXPECT_EQ(store.celebration()->failures, 2);
    EXPECT_EQ(phases, 2) << "a scan follows all the same";
}

TEST_F(CleaningTest, CountsSuccessesAndFailuresApart) {
    writeFile(junk() / "gone", std::string(4096, 'g'));
    writeFile(junk() / "kept", std::string(8192, 'k'));
    writeFile(junk() / "last", std::string(16384, 'l'));
    offerItemsOf(junk());
    Store& store = scannedStore();
    const std::int64_t expected = allocated(junk() / "kept") + allocated(junk() / "last");
    fs::remove(junk() / "gone");
    clean();
    EXPECT_EQ(store.celebration()->bytes, expected);
    EXPECT_EQ(store.celebration()->failures, 1);
    ASSERT_EQ(store.history()[0].moves.size(), 2U);
    EXPECT_EQ(store.history()[0].moves[0].original, junk() / "kept");
}

TEST_F(CleaningTest, SnapshotsAreDeletedAfterAllMoves) {
    writeFile(junk() / "a", "a");
    std::vector<bool> movedBefore;
    sources_.runTool = [&](const std::string& path, const std::vector<std::string>& arguments) {
        const std::lock_guard guard(toolLock_);
        movedBefore.push_back(!isThere(junk() / "a"));
        toolCalls_.push_back(path + " " + arguments.at(0) + " " + arguments.at(1));
        return arguments.size() == 2 && arguments[1] != "2024-05-01-101530" ? 0 : 1;
    };
    offer([](Probe&) {
        return std::vector<Card>{snapshotCard({"2024-05-01-091530", "2024-05-01-101530", "2024-05-01-111530"})};
    });
    offerItemsOf(junk());
    Store& store = scannedStore();
    clean();
    EXPECT_THAT(movedBefore, ElementsAre(true, true, true));
    const std::string tool = (testRoot() / "usr/bin/tmutil").string() + " deletelocalsnapshots ";
    EXPECT_THAT(toolCalls_,
                ElementsAre(tool + "2024-05-01-091530", tool + "2024-05-01-101530", tool + "2024-05-01-111530"));
    EXPECT_EQ(store.celebration()->snapshots, 2);
    EXPECT_EQ(store.celebration()->failures, 1);
    EXPECT_EQ(store.history()[0].snapshotsRemoved, 2);
    EXPECT_EQ(store.history()[0].moves.size(), 1U);
}

TEST_F(CleaningTest, ACardOfSnapshotsAloneMovesNothing) {
    refusedSnapshot_ = "2";
    offer([](Probe&) { return std::vector<Card>{snapshotCard({"1", "2"})}; });
    Store& store = scannedStore();
    clean();
    EXPECT_THAT(store.history()[0].moves, IsEmpty());
    EXPECT_EQ(store.history()[0].snapshotsRemoved, 1);
    EXPECT_EQ(store.history()[0].bytes, 0);
    EXPECT_EQ(store.celebration()->failures, 1);
    EXPECT_FALSE(isThere(homeTrash()));
}

TEST_F(CleaningTest, TheRealToolIsRunWhereNoOtherIsGiven) {
    // This world's backup tool writes down its arguments.
    const fs::path tool = testRoot() / "usr/bin/tmutil";
    writeFile(tool, "#!/bin/sh\necho \"$@\" >> " + (testHome() / "calls").string() + "\ntest \"$2\" != bad\n");
    fs::permissions(tool, fs::perms::owner_all);
    const Store::Sources own;
    sources_.runTool = own.runTool;
    offer([](Probe&) { return std::vector<Card>{snapshotCard({"good", "bad"})}; });
    Store& store = scannedStore();
    clean();
    EXPECT_EQ(contentOf(testHome() / "calls"), "deletelocalsnapshots good\ndeletelocalsnapshots bad\n");
    EXPECT_EQ(store.celebration()->snapshots, 1);
    EXPECT_EQ(store.celebration()->failures, 1);
    fs::remove(tool);
    clean();
    EXPECT_EQ(store.celebration()->failures, 2) << "no tool at all";
}

TEST_F(CleaningTest, APreviewTouchesNothing) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    offer([](Probe&) { return std::vector<Card>{snapshotCard({"1"})}; });
    Store& store = scannedStore();
    const std::vector<Card> cards = store.cards();
    const auto before = portrait(junk());
    store.setPreviewOnly(true);
    QElapsedTimer elapsed;
    elapsed.start();
    int phases = 0;
    QObject::connect(&store, &Store::phaseChanged, [&] { ++phases; });
    store.performClean();
    EXPECT_TRUE(store.cleaning());
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    EXPECT_GE(elapsed.elapsed(), 900);
    EXPECT_EQ(portrait(junk()), before);
    EXPECT_FALSE(isThere(homeTrash()));
    EXPECT_THAT(toolCalls_, IsEmpty());
    EXPECT_EQ(phases, 0) << "no scan follows";
    EXPECT_TRUE(std::equal(cards.begin(), cards.end(), store.cards().begin(), store.cards().end(),
                           [](const Card& a, const Card& b) { return a.id == b.id && a.entries == b.entries; }));
    const HistoryEntry& entry = store.history()[0];
    EXPECT_TRUE(entry.preview);
    EXPECT_EQ(entry.bytes, store.selectedBytes());
    EXPECT_THAT(entry.moves, IsEmpty());
    EXPECT_EQ(entry.titles.size(), 2U);
    EXPECT_EQ(entry.snapshotsRemoved, 0);
    EXPECT_TRUE(store.celebration()->preview);
    EXPECT_EQ(store.celebration()->bytes, store.selectedBytes());
    EXPECT_EQ(store.celebration()->snapshots, 0);
    EXPECT_EQ(store.celebration()->failures, 0);

    // The same cards can then be cleaned for real.
    store.setPreviewOnly(false);
    clean();
    EXPECT_FALSE(isThere(junk() / "a"));
    EXPECT_EQ(store.history().size(), 2U);
    EXPECT_FALSE(store.history()[0].preview);
}

TEST_F(CleaningTest, TheSwitchIsReadOnceForARun) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    Store& store = scannedStore();
    store.setPreviewOnly(true);
    store.performClean();
    store.setPreviewOnly(false);
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    EXPECT_TRUE(store.history()[0].preview);
    EXPECT_TRUE(isThere(junk() / "a"));

    store.performClean();
    store.setPreviewOnly(true);
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    EXPECT_FALSE(store.history()[0].preview);
    EXPECT_FALSE(isThere(junk() / "a"));
}

TEST_F(CleaningTest, ASwitchTurnedByWhoeverHearsOfTheRunDoesNotCount) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    Store& store = scannedStore();
    for (const bool preview : {true, false}) {
        store.setPreviewOnly(preview);
        const auto turning = QObject::connect(&store, &Store::cleaningChanged, [&] {
            if (store.cleaning()) {
                store.setPreviewOnly(!preview);
            }
        });
        clean();
        QObject::disconnect(turning);
        EXPECT_EQ(store.history()[0].preview, preview);
        EXPECT_EQ(isThere(junk() / "a"), preview);
    }
}

TEST_F(CleaningTest, TitlesAndBytesBelongToTheSameCards) {
    writeFile(junk() / "a", std::string(4096, 'a'));
    writeFile(testHome() / "Other/b", std::string(8192, 'b'));
    offerItemsOf(junk());
    offerItemsOf(testHome() / "Other", "other");
    Store& store = scannedStore();
    const std::int64_t total = store.selectedBytes();
    store.setPreviewOnly(true);
    QObject::connect(&store, &Store::cleaningChanged, [&] { store.setSelected("other", false); });
    clean();
    EXPECT_EQ(store.history()[0].titles.size(), 2U);
    EXPECT_EQ(store.history()[0].bytes, total);
}

TEST_F(CleaningTest, ATotalThatOverflowsEndsTheProgramBeforeAnythingMoves) {
    writeFile(junk() / "a", "a");
    writeFile(junk() / "b", "b");
    offer([](Probe& probe) {
        std::vector<Card> cards;
        for (const char* const name : {"a", "b"}) {
            cards.push_back(cardOf(probe, name, name, {junk() / name}));
            cards.back().entries[0].size = std::numeric_limits<std::int64_t>::max();
        }
        return cards;
    });
    Store& store = scannedStore();
    const auto runToTheEnd = [&] {
        store.performClean();
        waitFor([&] { return !store.cleaning(); });
    };
    EXPECT_DEATH(runToTheEnd(), "does not fit 64 bits");
    EXPECT_TRUE(isThere(junk() / "a"));
    EXPECT_TRUE(isThere(junk() / "b"));
}

TEST_F(CleaningTest, ASelectionChangedDuringTheRunDoesNotCount) {
    writeFile(junk() / "a", std::string(4096, 'a'));
    offerItemsOf(junk());
    Store& store = scannedStore();
    const std::int64_t total = store.selectedBytes();
    store.setPreviewOnly(true);
    store.performClean();
    store.setSelected("junk", false);
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    EXPECT_EQ(store.history()[0].bytes, total);
    EXPECT_THAT(store.history()[0].titles, ElementsAre("Title of junk"));
}

TEST_F(CleaningTest, OnlyTickedCardsAreCleaned) {
    writeFile(junk() / "a", "a");
    writeFile(testHome() / "Other/b", "b");
    offerItemsOf(junk());
    offerItemsOf(testHome() / "Other", "other");
    Store& store = scannedStore();
    store.setSelected("other", false);
    clean();
    EXPECT_FALSE(isThere(junk() / "a"));
    EXPECT_TRUE(isThere(testHome() / "Other/b"));
    EXPECT_THAT(store.history()[0].titles, ElementsAre("Title of junk"));
}

TEST_F(CleaningTest, ACardThatLiesMovesNothing) {
    writeFile(testRoot() / "etc/passwords", "precious");
    writeFile(testRoot() / "Users/other/file", "precious");
    makeFolder(junk());
    const auto before = portrait(testRoot() / "etc");
    offer([](Probe& probe) {
        return std::vector<Card>{cardOf(probe, "lies", "Lies",
                                        {testRoot() / "etc/passwords", junk() / "../../other/file", testHome(),
                                         testRoot() / "Users/other", "/etc/hostname", ""})};
    });
    Store& store = scannedStore();
    clean();
    EXPECT_EQ(store.celebration()->failures, 6);
    EXPECT_EQ(store.celebration()->bytes, 0);
    EXPECT_EQ(portrait(testRoot() / "etc"), before);
    EXPECT_EQ(contentOf(testRoot() / "Users/other/file"), "precious");
    EXPECT_FALSE(isThere(homeTrash()));
}

TEST_F(CleaningTest, AFolderSwappedAfterTheScanIsLeftAlone) {
    writeFile(junk() / "inner/a", "junk");
    writeFile(testHome() / "Documents/a", "precious");
    offerItemsOf(junk() / "inner");
    Store& store = scannedStore();
    fs::rename(junk(), testHome() / "aside");
    makeFolder(junk());
    makeLink(junk() / "inner", testHome() / "Documents");
    clean();
    EXPECT_EQ(store.celebration()->failures, 1);
    EXPECT_EQ(contentOf(testHome() / "Documents/a"), "precious");
    EXPECT_EQ(contentOf(testHome() / "aside/inner/a"), "junk");
    // The scan after that has seen the new folder, so now it may be cleaned.
    clean();
    EXPECT_EQ(store.celebration()->failures, 0);
}

TEST_F(CleaningTest, ANameThatIsNotUtf8StaysAndCounts) {
    VESK_NEEDS_NAMES("bad\xFF");
    writeFile(junk() / "bad\xFF", "x");
    writeFile(junk() / "good", "x");
    offerItemsOf(junk());
    Store& store = scannedStore();
    clean();
    EXPECT_TRUE(isThere(junk() / "bad\xFF"));
    EXPECT_EQ(store.celebration()->failures, 1);
    EXPECT_EQ(storedHistory().size(), 1U);
}

TEST_F(CleaningTest, TheSameNameTwiceKeepsBoth) {
    writeFile(junk() / "a", "first");
    offerItemsOf(junk());
    Store& store = scannedStore();
    clean();
    writeFile(junk() / "a", "second");
    scan();
    clean();
    ASSERT_EQ(store.history().size(), 2U);
    EXPECT_EQ(contentOf(store.history()[1].moves[0].trashed), "first");
    EXPECT_EQ(contentOf(store.history()[0].moves[0].trashed), "second");
}

TEST_F(CleaningTest, AnEntryInsideAnotherFailsOnceItsFolderIsGone) {
    writeFile(junk() / "folder/inner", "x");
    offer([](Probe& probe) {
        return std::vector<Card>{
            cardOf(probe, "nested", "Nested", {junk() / "folder", junk() / "folder/inner", junk() / "folder"})};
    });
    Store& store = scannedStore();
    clean();
    EXPECT_EQ(store.history()[0].moves.size(), 1U);
    EXPECT_EQ(store.celebration()->failures, 2);
    EXPECT_EQ(contentOf(trashFiles() / "folder/inner"), "x");
}

TEST_F(CleaningTest, TheCelebrationIsShownUntilDismissed) {
    writeFile(junk() / "a", std::string(4096, 'a'));
    offerItemsOf(junk());
    Store& store = scannedStore();
    EXPECT_TRUE(store.property("celebration").isNull());
    clean();
    const QVariantMap fields = store.property("celebration").toMap();
    EXPECT_EQ(fields["id"].toString().toStdString(), store.celebration()->id.text());
    EXPECT_EQ(fields["bytesText"].toString(), "4 KB");
    EXPECT_FALSE(fields["preview"].toBool());
    EXPECT_EQ(fields["snapshots"].toLongLong(), 0);
    EXPECT_EQ(fields["failures"].toLongLong(), 0);
    const Uuid first = store.celebration()->id;
    store.dismissCelebration();
    EXPECT_FALSE(store.celebration());
    EXPECT_TRUE(store.property("celebration").isNull());
    writeFile(junk() / "b", "b");
    scan();
    clean();
    EXPECT_NE(store.celebration()->id, first);
}

}  // namespace
}  // namespace vesk

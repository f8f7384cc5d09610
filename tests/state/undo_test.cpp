// Undo in a Store: what is restored, what the user is told, and what the entry says afterwards.

#include <gmock/gmock.h>

#include "state/store_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UndoTest : public StoreHome {
protected:
    static fs::path junk() { return testHome() / "Junk"; }

    // A store that has just cleaned three items.
    Store& cleanedStore() {
        writeFile(junk() / "a", "a");
        writeFile(junk() / "b/inner", "b");
        makeLink(junk() / "c", "nowhere");
        fs::permissions(junk() / "b", static_cast<fs::perms>(0750));
        setDates(junk() / "b", daysAgo(90));
        before_ = portrait(junk());
        // No rule offers a dangling link, so this test does.
        offerItemsOf(junk());
        Store& store = scannedStore();
        clean();
        EXPECT_EQ(store.history().at(0).moves.size(), 3U);
        return store;
    }
    // The items are as they were; their folder's date may differ.
    void expectAsBefore() {
        auto found = portrait(junk());
        found.erase(".");
        before_.erase(".");
        EXPECT_EQ(found, before_);
    }

    std::map<std::string, std::string> before_;
};

TEST_F(UndoTest, BringsEverythingBackAsItWas) {
    Store& store = cleanedStore();
    int phases = 0;
    QObject::connect(&store, &Store::phaseChanged, [&] { ++phases; });
    undo();
    expectAsBefore();
    EXPECT_TRUE(store.history()[0].undone);
    EXPECT_EQ(store.notice(), "All 3 items are back where they were.");
    EXPECT_EQ(phases, 2) << "a scan follows";
    EXPECT_EQ(store.cards().at(0).entries.size(), 3U);
    EXPECT_THAT(namesIn(trashInfo()), IsEmpty());
    EXPECT_THAT(namesIn(trashFiles()), IsEmpty());
    EXPECT_TRUE(Store(sources_).history().at(0).undone) << "stored too";
}

TEST_F(UndoTest, MakesFoldersThatAreGone) {
    Store& store = cleanedStore();
    fs::remove_all(junk());
    undo();
    expectAsBefore();
    EXPECT_TRUE(store.history()[0].undone);
    EXPECT_EQ(store.notice(), "All 3 items are back where they were.");
}

TEST_F(UndoTest, ASecondUndoFindsNothing) {
    Store& store = cleanedStore();
    undo();
    undo();
    expectAsBefore();
    EXPECT_FALSE(store.history()[0].undone);
    EXPECT_EQ(store.notice(), "Put back 0 of 3 items. The rest are no longer in the Trash (maybe it was emptied).");
}

TEST_F(UndoTest, AnEmptiedTrashGivesNothingBack) {
    Store& store = cleanedStore();
    fs::remove_all(homeTrash());
    undo();
    EXPECT_FALSE(store.history()[0].undone);
    EXPECT_THAT(namesIn(junk()), IsEmpty());
    EXPECT_EQ(store.notice(), "Put back 0 of 3 items. The rest are no longer in the Trash (maybe it was emptied).");
}

TEST_F(UndoTest, GoesOnAfterAConflict) {
    Store& store = cleanedStore();
    writeFile(junk() / "b", "something new");
    undo();
    EXPECT_EQ(contentOf(junk() / "b"), "something new");
    EXPECT_EQ(contentOf(junk() / "a"), "a");
    EXPECT_TRUE(fs::is_symlink(junk() / "c"));
    EXPECT_EQ(contentOf(trashFiles() / "b/inner"), "b");
    EXPECT_THAT(namesIn(trashInfo()), ElementsAre("b.trashinfo"));
    EXPECT_FALSE(store.history()[0].undone);
    EXPECT_EQ(store.notice(), "Put back 2 of 3 items. The rest are no longer in the Trash (maybe it was emptied).");
    // Once the place is free again, another undo brings the rest.
    fs::remove(junk() / "b");
    undo();
    expectAsBefore();
    EXPECT_EQ(store.notice(), "Put back 1 of 3 items. The rest are no longer in the Trash (maybe it was emptied).");
}

TEST_F(UndoTest, APreviewHasNothingToPutBack) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    Store& store = scannedStore();
    store.setPreviewOnly(true);
    clean();
    int phases = 0;
    QObject::connect(&store, &Store::phaseChanged, [&] { ++phases; });
    undo();
    EXPECT_TRUE(store.history()[0].undone);
    EXPECT_EQ(store.notice(), "All 0 items are back where they were.");
    EXPECT_EQ(phases, 2);
    EXPECT_TRUE(isThere(junk() / "a"));
}

TEST_F(UndoTest, AnUnknownEntryOrABusyStoreChangesNothing) {
    Store& store = cleanedStore();
    store.undo(Uuid::random());
    store.undo(QStringLiteral("no identifier"));
    EXPECT_FALSE(store.cleaning());
    store.scan();
    store.undo(store.history()[0].id);
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    EXPECT_THAT(namesIn(junk()), IsEmpty());
    EXPECT_FALSE(store.notice());
}

TEST_F(UndoTest, HoldsOffOtherWorkWhileItRuns) {
    Store& store = cleanedStore();
    store.undo(QString::fromStdString(store.history()[0].id.text()));
    EXPECT_TRUE(store.cleaning());
    EXPECT_TRUE(store.busy());
    store.undo(store.history()[0].id);
    store.performClean();
    store.scan();
    EXPECT_NE(store.phase(), Store::Phase::scanning);
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    expectAsBefore();
    EXPECT_EQ(store.notice(), "All 3 items are back where they were.");
}

TEST_F(UndoTest, AnOlderRunCanBeUndone) {
    Store& store = cleanedStore();
    writeFile(junk() / "a", "newer");
    scan();
    clean();
    undo(1);
    expectAsBefore();
    EXPECT_TRUE(store.history()[1].undone);
    EXPECT_FALSE(store.history()[0].undone);
    undo(0);
    EXPECT_EQ(contentOf(junk() / "a"), "a") << "the older one came first";
    EXPECT_EQ(contentOf(store.history()[0].moves[0].trashed), "newer");
}

TEST_F(UndoTest, WorksAfterARestart) {
    cleanedStore();
    store_.reset();
    makeStore();
    undo();
    expectAsBefore();
}

TEST_F(UndoTest, AnEntryWhosePlaceIsUnknownCannotBeUndone) {
    Store& store = cleanedStore();
    const std::string stored = *Preferences().data("vesk.history");
    std::string changed = stored;
    const std::string place = (trashFiles() / "a").string();
    changed.replace(changed.find(place), place.size(), "");
    ASSERT_TRUE(Preferences().setData("vesk.history", changed));
    store_.reset();
    Store& next = makeStore();
    undo();
    EXPECT_EQ(next.notice(), "Put back 2 of 3 items. The rest are no longer in the Trash (maybe it was emptied).");
    EXPECT_TRUE(isThere(trashFiles() / "a"));
    (void)store;
}

TEST_F(UndoTest, CleanUndoCleanUndo) {
    Store& store = cleanedStore();
    for (int round = 0; round < 5; ++round) {
        undo();
        expectAsBefore();
        clean();
        EXPECT_THAT(namesIn(junk()), IsEmpty());
    }
    EXPECT_EQ(store.history().size(), 6U);
    EXPECT_THAT(namesIn(trashInfo()), ElementsAre("a.trashinfo", "b.trashinfo", "c.trashinfo"));
}

TEST_F(UndoTest, QuittingRecordsWhatCameBack) {
    Store& store = cleanedStore();
    store.undo(store.history()[0].id);
    store_.reset();
    // However many items were restored before the store ended, the entry and the disk agree.
    Store& next = makeStore();
    const bool all = isThere(junk() / "a") && isThere(junk() / "b") && isThere(junk() / "c");
    EXPECT_EQ(next.history()[0].undone, all);
    undo();
    expectAsBefore();
}

}  // namespace
}  // namespace vesk

// Cleans of a Store: what reaches the Trash, what is recorded and what the user is told.

#include <gmock/gmock.h>

#include "state/store_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using testing::itemsOf;
using testing::makeFile;
using testing::makeFolder;
using testing::makeLink;
using testing::testHome;
using testing::waitUntil;

class CleaningTest : public testing::StoreHome {
protected:
    static fs::path junk() { return testHome() / "Junk"; }
};

TEST_F(CleaningTest, MovesEveryEntryAndRecordsIt) {
    makeFile(junk() / "a", 4096);
    makeFile(junk() / "b/inside", 8192);
    offerItemsOf(junk());
    Store& store = scannedStore();
    const std::int64_t total = store.selectedBytes();
    ASSERT_GT(total, 0);
    clean();
    EXPECT_TRUE(itemsOf(junk()).empty());
    EXPECT_TRUE(fs::exists(trashFiles() / "a"));
    EXPECT_TRUE(fs::exists(trashFiles() / "b/inside"));
    ASSERT_EQ(store.history().size(), 1U);
    const HistoryEntry& entry = store.history()[0];
    EXPECT_EQ(entry.bytes, total);
    EXPECT_FALSE(entry.preview);
    EXPECT_FALSE(entry.undone);
    EXPECT_THAT(entry.titles, ElementsAre("Title of junk"));
    ASSERT_EQ(entry.moves.size(), 2U);
    EXPECT_EQ(entry.moves[0].original, junk() / "a");
    EXPECT_EQ(entry.moves[0].trashed, trashFiles() / "a");
    EXPECT_EQ(entry.moves[1].original, junk() / "b");
    ASSERT_TRUE(store.celebration());
    EXPECT_EQ(store.celebration()->bytes, total);
    EXPECT_EQ(store.celebration()->failures, 0);
    EXPECT_TRUE(store.cards().empty());
}

TEST_F(CleaningTest, UndoBringsEverythingBack) {
    makeFile(junk() / "a", 4096);
    makeFile(junk() / "b/inside", 8192);
    offerItemsOf(junk());
    Store& store = scannedStore();
    clean();
    undo();
    EXPECT_TRUE(fs::exists(junk() / "a"));
    EXPECT_TRUE(fs::exists(junk() / "b/inside"));
    EXPECT_TRUE(store.history()[0].undone);
    EXPECT_EQ(store.notice(), "All 2 items are back where they were.");
    EXPECT_EQ(store.cards().size(), 1U);
}

}  // namespace
}  // namespace vesk

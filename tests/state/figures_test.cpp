// Where a figure differs from the space that a clean frees: it is a sum of entries, each measured separately.

#include <gmock/gmock.h>

#include "rules/rules.h"
#include "state/store_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

class FiguresTest : public StoreHome {
protected:
    // The store after a scan with this rule, its cards ticked.
    Store& ticked(std::vector<Card> (*rule)(Probe&)) {
        rules_.push_back({"rule", rule});
        Store& store = scannedStore();
        for (const Card& card : store.cards()) {
            store.setSelected(QString::fromStdString(card.id), true);
        }
        return store;
    }
};

TEST_F(FiguresTest, ALinkCountsWhatItLeadsToThoughThatStays) {
    const fs::path disk = testRoot() / "Volumes/Disk/models";
    makeFile(disk / "file", 8192);
    makeLink(testHome() / ".ollama/models", disk);
    Store& store = ticked(rules::dormantModels);
    EXPECT_EQ(store.selectedBytes(), allocated(disk / "file"));
    clean();
    EXPECT_EQ(store.celebration()->bytes, allocated(disk / "file"));
    EXPECT_FALSE(isThere(testHome() / ".ollama/models"));
    EXPECT_TRUE(isThere(disk / "file"));
}

TEST_F(FiguresTest, AFolderAndALinkToItCountTwice) {
    const fs::path models = testHome() / "Library/Caches/torch";
    makeFile(models / "file", 8192);
    const std::int64_t once = allocated(models / "file");
    makeLink(testHome() / ".cache/torch", models);
    Store& store = ticked(rules::dormantModels);
    EXPECT_EQ(store.selectedBytes(), 2 * once);
    clean();
    EXPECT_EQ(store.celebration()->bytes, 2 * once);
    EXPECT_EQ(store.celebration()->failures, 0);
}

TEST_F(FiguresTest, OnePlaceByTwoPathsCountsTwiceUntilItIsMoved) {
    makeFile(testHome() / ".cache/torch/file", 8192);
    const std::int64_t once = allocated(testHome() / ".cache/torch/file");
    makeLink(testHome() / "Library/Caches", testHome() / ".cache");
    Store& store = ticked(rules::dormantModels);
    EXPECT_EQ(store.selectedBytes(), 2 * once);
    clean();
    EXPECT_EQ(store.celebration()->bytes, once);
    EXPECT_EQ(store.celebration()->failures, 1);
}

TEST_F(FiguresTest, EachNameOfAFileCounts) {
    const fs::path caches = testHome() / "Library/Caches";
    makeFile(caches / "one/file", 8192);
    makeFolder(caches / "two");
    fs::create_hard_link(caches / "one/file", caches / "two/file");
    const std::int64_t once = allocated(caches / "one/file");
    Store& store = ticked(rules::appCaches);
    EXPECT_EQ(store.selectedBytes(), 2 * once);
    clean();
    EXPECT_EQ(store.celebration()->bytes, 2 * once);
}

TEST_F(FiguresTest, WhatIsCountedIsWhatTheScanMeasured) {
    const fs::path cache = testHome() / "Library/Caches/app/file";
    makeFile(cache, 8192);
    const std::int64_t measured = allocated(cache);
    Store& store = ticked(rules::appCaches);
    makeFile(cache, 800'000);
    clean();
    EXPECT_EQ(store.celebration()->bytes, measured);
}

}  // namespace
}  // namespace vesk

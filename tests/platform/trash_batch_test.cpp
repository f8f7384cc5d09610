// Moving many items to the Trash, with their records written in batches.

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "platform/trash_fixture.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class TrashBatchTest : public TrashTest {
protected:
    const fs::path notes = world().configHome / "vesk/records-under-way";

    // New items with different names, as a scan would see them.
    std::vector<SeenItem> made(std::size_t count) const {
        std::vector<SeenItem> items;
        for (std::size_t i = 0; i < count; ++i) {
            const std::string name = "item" + std::to_string(i);
            writeFile(testHome() / "Junk" / name, name);
            items.push_back(seen(testHome() / "Junk" / name));
        }
        return items;
    }
    static void record(TrashBatch& batch, const std::vector<SeenItem>& items) {
        batch.record(items.data(), items.data() + items.size());
    }
    static std::int64_t moving(TrashBatch& batch, const SeenItem& item) {
        const TrashOutcome outcome = batch.move(item);
        return outcome.error ? outcome.error->code : 0;
    }
    // Leaves what a clean leaves that was killed after recording these items.
    void beKilledAfterRecording(const std::vector<SeenItem>& items) const {
        const pid_t child = fork();
        if (child == 0) {
            TrashBatch batch(notes);
            record(batch, items);
            _exit(0);
        }
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_EQ(status, 0);
    }
};

class RecordsAheadTest : public TrashBatchTest {
protected:
    void SetUp() override {
        TrashBatchTest::SetUp();
        if (!homeKeepsOrderOfNames()) {
            GTEST_SKIP() << "no record is made ahead where names are not kept in order";
        }
    }
};

TEST_F(RecordsAheadTest, EachItemIsOnRecordBeforeTheFirstMoves) {
    const std::vector<SeenItem> items = made(3);
    TrashBatch batch(notes);
    record(batch, items);
    EXPECT_THAT(namesIn(info), ElementsAre("item0.trashinfo", "item1.trashinfo", "item2.trashinfo"));
    EXPECT_THAT(namesIn(files), IsEmpty());
    for (const SeenItem& each : items) {
        const TrashOutcome outcome = batch.move(each);
        ASSERT_FALSE(outcome.error);
        EXPECT_EQ(contentOf(outcome.place), each.path.filename());
        EXPECT_EQ(restoring(outcome.place, each.path, outcome.identity), 0) << "told from all others by its identity";
    }
    EXPECT_THAT(namesIn(info), IsEmpty());
}

TEST_F(TrashBatchTest, MovesMoreItemsThanThereAreDescriptors) {
    const std::vector<SeenItem> items = made(120);
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few{60, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    {
        TrashBatch batch(notes);
        record(batch, items);
        for (const SeenItem& each : items) {
            EXPECT_EQ(moving(batch, each), 0) << each.path;
        }
    }
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_THAT(namesIn(files), SizeIs(120));
    EXPECT_THAT(namesIn(info), SizeIs(120));
    EXPECT_FALSE(isThere(notes));
}

TEST_F(RecordsAheadTest, WhatIsNotMovedIsTakenOffTheRecord) {
    const std::vector<SeenItem> items = made(3);
    {
        TrashBatch batch(notes);
        record(batch, items);
        EXPECT_TRUE(isThere(notes));
        EXPECT_EQ(moving(batch, items[0]), 0);
    }
    EXPECT_THAT(namesIn(info), ElementsAre("item0.trashinfo"));
    EXPECT_FALSE(isThere(notes));
    EXPECT_TRUE(isThere(items[1].path));
}

// For example since a program has it in use.
TEST_F(RecordsAheadTest, AnItemLeftOutOfItsTurnCostsTheOthersNotTheirRecords) {
    const std::vector<SeenItem> items = made(3);
    TrashBatch batch(notes);
    record(batch, items);
    ASSERT_EQ(moving(batch, items[1]), 0);
    EXPECT_THAT(namesIn(homeTrash() / "info"), ElementsAre("item1.trashinfo", "item2.trashinfo"));
    EXPECT_TRUE(isThere(items[0].path));
}

TEST_F(TrashBatchTest, AnItemThatVanishedOnceOnRecordLeavesNoRecord) {
    const std::vector<SeenItem> items = made(3);
    TrashBatch batch(notes);
    record(batch, items);
    fs::remove(items[1].path);
    EXPECT_EQ(moving(batch, items[0]), 0);
    EXPECT_EQ(moving(batch, items[1]), ENOENT);
    EXPECT_EQ(moving(batch, items[2]), 0);
    EXPECT_THAT(namesIn(info), ElementsAre("item0.trashinfo", "item2.trashinfo"));
}

TEST_F(RecordsAheadTest, AFolderSwappedOnceOnRecordIsLeftAlone) {
    const std::vector<SeenItem> items = made(2);
    TrashBatch batch(notes);
    record(batch, items);
    fs::rename(testHome() / "Junk", testHome() / "Aside");
    writeFile(testHome() / "Junk/item0", "precious");
    EXPECT_EQ(moving(batch, items[0]), ESTALE);
    EXPECT_EQ(contentOf(testHome() / "Junk/item0"), "precious");
    EXPECT_EQ(contentOf(testHome() / "Aside/item0"), "item0");
    EXPECT_THAT(namesIn(info), ElementsAre("item1.trashinfo"));
}

TEST_F(TrashBatchTest, AnItemChangedOnceOnRecordStays) {
    std::vector<SeenItem> items = made(2);
    setDates(items[0].path, daysAgo(100));
    items[0].dates.modified = now() - std::chrono::hours(24);
    TrashBatch batch(notes);
    record(batch, items);
    writeFile(items[0].path, "worked on");
    EXPECT_EQ(moving(batch, items[0]), ESTALE);
    EXPECT_EQ(contentOf(items[0].path), "worked on");
    EXPECT_EQ(moving(batch, items[1]), 0);
    EXPECT_THAT(namesIn(info), ElementsAre("item1.trashinfo"));
}

TEST_F(TrashBatchTest, ATrashThatWasMovedAwayGetsNoItems) {
    const std::vector<SeenItem> items = made(2);
    TrashBatch batch(notes);
    record(batch, items);
    fs::rename(homeTrash(), testHome() / "old Trash");
    const TrashOutcome outcome = batch.move(items[0]);
    ASSERT_FALSE(outcome.error);
    EXPECT_EQ(outcome.place, files / "item0");
    EXPECT_EQ(contentOf(files / "item0"), "item0");
    EXPECT_THAT(namesIn(testHome() / "old Trash/files"), IsEmpty());
    EXPECT_THAT(namesIn(info), ElementsAre("item0.trashinfo"));
}

TEST_F(TrashBatchTest, ARecordThatAnotherProgramRemovedIsWrittenAnew) {
    const std::vector<SeenItem> items = made(2);
    TrashBatch batch(notes);
    record(batch, items);
    fs::remove(info / "item0.trashinfo");
    EXPECT_EQ(moving(batch, items[0]), 0);
    EXPECT_EQ(moving(batch, items[1]), 0);
    EXPECT_THAT(namesIn(info), ElementsAre("item0.trashinfo", "item1.trashinfo"));
    EXPECT_THAT(namesIn(files), ElementsAre("item0", "item1"));
}

TEST_F(TrashBatchTest, ItemsOfOneNameGetNamesOfTheirOwn) {
    std::vector<SeenItem> items;
    for (const char* const folder : {"a", "b", "c"}) {
        writeFile(testHome() / folder / "node_modules", folder);
        items.push_back(seen(testHome() / folder / "node_modules"));
    }
    TrashBatch batch(notes);
    record(batch, items);
    for (const SeenItem& each : items) {
        const TrashOutcome outcome = batch.move(each);
        ASSERT_FALSE(outcome.error);
        EXPECT_EQ(contentOf(outcome.place), each.path.parent_path().filename());
    }
    EXPECT_THAT(namesIn(info),
                ElementsAre("node_modules.2.trashinfo", "node_modules.3.trashinfo", "node_modules.trashinfo"));
}

TEST_F(RecordsAheadTest, TheRecordsOfAKilledCleanAreTakenBackByTheNext) {
    const std::vector<SeenItem> items = made(3);
    beKilledAfterRecording(items);
    ASSERT_THAT(namesIn(info), SizeIs(3));
    const TrashBatch next(notes);
    EXPECT_THAT(namesIn(info), IsEmpty());
    EXPECT_FALSE(isThere(notes));
    EXPECT_TRUE(isThere(items[0].path));
}

TEST_F(RecordsAheadTest, OfAKilledCleanOnlyItsOwnRecordsWithoutItemsAreTakenBack) {
    const std::vector<SeenItem> items = made(3);
    beKilledAfterRecording(items);
    // Since then, one record has become another program's, and one item has reached the Trash.
    writeFile(info / "item0.trashinfo", "[Trash Info]\nPath=/elsewhere\nDeletionDate=2026-01-01T00:00:00\n");
    fs::rename(items[1].path, files / "item1");
    const TrashBatch next(notes);
    EXPECT_THAT(namesIn(info), ElementsAre("item0.trashinfo", "item1.trashinfo"));
}

TEST_F(RecordsAheadTest, ARecordHalfWrittenWhenACleanWasKilledIsTakenBackUnlessSomebodyWritesIt) {
    const std::vector<SeenItem> items = made(2);
    beKilledAfterRecording(items);
    fs::resize_file(info / "item0.trashinfo", 0);
    fs::resize_file(info / "item1.trashinfo", 5);
    const std::ofstream writing(info / "item1.trashinfo", std::ios::app);
    const TrashBatch next(notes);
    EXPECT_THAT(namesIn(info), ElementsAre("item1.trashinfo"));
}

TEST_F(TrashBatchTest, NotesThatAreCutOffOrForgedRemoveNothing) {
    writeFile(testHome() / "precious", "text");
    writeFile(info / "kept.trashinfo", "text");
    const std::string nul(1, '\0');
    for (const std::string& text :
         {(testHome() / "precious").string() + nul + "text" + nul, "info/kept.trashinfo" + nul + "text" + nul,
          (info / "kept.trashinfo").string() + nul + "text", (info / "kept.trashinfo").string() + nul + "other" + nul,
          nul + nul}) {
        writeFile(notes, text);
        const TrashBatch next(notes);
        EXPECT_EQ(contentOf(testHome() / "precious"), "text");
        EXPECT_EQ(contentOf(info / "kept.trashinfo"), "text");
        EXPECT_FALSE(isThere(notes));
    }
}

}  // namespace
}  // namespace vesk

// What lies in the Trash under the name of an item that Vesk moved there need not be that item: the Trash was emptied
// meanwhile, and somebody trashed something else of that name. An undo leaves it alone, with its record.

#include <gmock/gmock.h>

#include <ctime>

#include "platform/trash/trash_info.h"
#include "state/store_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UndoOwnershipTest : public StoreHome {
protected:
    const fs::path downloads = testHome() / "Downloads";
    const fs::path report = downloads / "report.pdf";

    UndoOwnershipTest() { offerItemsOf(downloads); }
    ~UndoOwnershipTest() override {
        unsetenv("TZ");
        tzset();
    }

    static void liveIn(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }

    // A store that has cleaned the report.
    Store& cleanedStore() {
        writeFile(report, "the report");
        Store& store = scannedStore();
        clean();
        EXPECT_EQ(store.history().at(0).moves.size(), 1U);
        return store;
    }

    static void emptyTrash() { fs::remove_all(homeTrash()); }

    // As another program would.
    static void trashOther(const std::string& name, const fs::path& place, Date deleted, const std::string& content) {
        writeFile(trashInfo() / (name + ".trashinfo"), trashInfoText(place.string(), deleted));
        writeFile(trashFiles() / name, content);
    }

    void expectNothingTaken(const std::string& content) {
        const std::string record = contentOf(trashInfo() / "report.pdf.trashinfo");
        undo();
        EXPECT_EQ(store_->notice(),
                  "Put back 0 of 1 items. The rest are no longer in the Trash (maybe it was emptied).");
        EXPECT_FALSE(store_->history()[0].undone);
        EXPECT_FALSE(isThere(report));
        EXPECT_EQ(contentOf(trashFiles() / "report.pdf"), content);
        EXPECT_EQ(contentOf(trashInfo() / "report.pdf.trashinfo"), record);
    }
    void expectBack() {
        undo();
        EXPECT_EQ(store_->notice(), "All 1 items are back where they were.");
        EXPECT_EQ(contentOf(report), "the report");
        EXPECT_THAT(namesIn(trashInfo()), IsEmpty());
    }
};

TEST_F(UndoOwnershipTest, WhatAnotherProgramTrashedUnderTheNameStays) {
    cleanedStore();
    emptyTrash();
    trashOther("report.pdf", testHome() / "Documents/report.pdf", now(), "another report");
    expectNothingTaken("another report");
}

TEST_F(UndoOwnershipTest, WhatALaterRunCleanedUnderTheNameStays) {
    const fs::path modules[] = {testHome() / "A/node_modules", testHome() / "B/node_modules"};
    for (const fs::path& folder : modules) {
        writeFile(folder / "whose", folder.parent_path().filename().string());
    }
    for (const fs::path& folder : modules) {
        rules_.clear();
        offerItemsOf(folder.parent_path());
        store_ ? scan() : static_cast<void>(scannedStore());
        clean();
        if (folder == modules[0]) {
            emptyTrash();
        }
    }
    ASSERT_EQ(store_->history().at(0).moves.at(0).trashed, store_->history().at(1).moves.at(0).trashed);
    undo(1);
    EXPECT_FALSE(isThere(modules[0]));
    EXPECT_EQ(store_->notice(), "Put back 0 of 1 items. The rest are no longer in the Trash (maybe it was emptied).");
    undo(0);
    EXPECT_EQ(contentOf(modules[1] / "whose"), "B");
}

TEST_F(UndoOwnershipTest, WhatALaterRunCleanedFromTheSamePlaceStays) {
    cleanedStore();
    emptyTrash();
    writeFile(report, "a new report");
    scan();
    clean();
    undo(1);
    EXPECT_EQ(store_->notice(), "Put back 0 of 1 items. The rest are no longer in the Trash (maybe it was emptied).");
    EXPECT_FALSE(isThere(report));
    undo(0);
    EXPECT_EQ(contentOf(report), "a new report");
}

TEST_F(UndoOwnershipTest, WhatWasTrashedLaterFromTheSamePlaceStays) {
    cleanedStore();
    emptyTrash();
    trashOther("report.pdf", report, now() + std::chrono::hours(1), "a later report");
    expectNothingTaken("a later report");
}

TEST_F(UndoOwnershipTest, AnItemWhoseRecordSaysNothingStays) {
    for (const std::string& record : {std::string(), std::string("[Trash Info]\n"), std::string("no record"),
                                      "[Trash Info]\nPath=" + report.string() + "\n",
                                      "[Trash Info]\nPath=" + report.string() + "\nDeletionDate=once\n"}) {
        cleanedStore();
        writeFile(trashInfo() / "report.pdf.trashinfo", record);
        expectNothingTaken("the report");
        store_.reset();
        fs::remove_all(testHome() / ".config");
        emptyTrash();
    }
}

TEST_F(UndoOwnershipTest, AnItemThatHasLostItsRecordStays) {
    cleanedStore();
    fs::remove(trashInfo() / "report.pdf.trashinfo");
    undo();
    EXPECT_FALSE(isThere(report));
    EXPECT_EQ(contentOf(trashFiles() / "report.pdf"), "the report");
}

// Another program has put the item back and trashed it once more, from another place.
TEST_F(UndoOwnershipTest, TheItemItselfStaysWhenItWasTrashedFromElsewhere) {
    cleanedStore();
    fs::remove(trashInfo() / "report.pdf.trashinfo");
    writeFile(trashInfo() / "report.pdf.trashinfo", trashInfoText((testHome() / "Desktop/report.pdf").string(), now()));
    expectNothingTaken("the report");
}

// It has put the item back and is about to trash it again: the new record is there, the item comes a moment later.
TEST_F(UndoOwnershipTest, ARecordThatAnotherProgramWroteInTheSameSecondStays) {
    cleanedStore();
    const std::string record = contentOf(trashInfo() / "report.pdf.trashinfo");
    fs::remove(trashInfo() / "report.pdf.trashinfo");
    fs::rename(trashFiles() / "report.pdf", report);
    writeFile(trashInfo() / "report.pdf.trashinfo", record);
    undo();
    EXPECT_EQ(contentOf(trashInfo() / "report.pdf.trashinfo"), record);
    EXPECT_EQ(contentOf(report), "the report");
}

TEST_F(UndoOwnershipTest, AJourneyBetweenCleanAndUndoTakesNothingAway) {
    for (const auto& [first, then] :
         std::vector<std::pair<const char*, const char*>>{{"Europe/Berlin", "America/New_York"},
                                                          {"America/New_York", "Europe/Berlin"},
                                                          {"Pacific/Kiritimati", "Pacific/Pago_Pago"}}) {
        liveIn(first);
        cleanedStore();
        store_.reset();
        liveIn(then);
        makeStore();
        expectBack();
        store_.reset();
        fs::remove_all(testHome() / ".config");
    }
}

TEST_F(UndoOwnershipTest, AnHourThatComesTwiceTakesNothingAway) {
    liveIn("Europe/Berlin");
    // 2026-10-25 02:30, in summer time and an hour later in winter time.
    for (const std::int64_t cleaned : {1'792'888'200, 1'792'891'800}) {
        stopClock(dateFromUnix(cleaned, 0));
        cleanedStore();
        ASSERT_THAT(contentOf(trashInfo() / "report.pdf.trashinfo"), ::testing::HasSubstr("=2026-10-25T02:30:00"));
        stopClock(dateFromUnix(cleaned + 86'400, 0));
        expectBack();
        store_.reset();
        fs::remove_all(testHome() / ".config");
    }
}

}  // namespace
}  // namespace vesk

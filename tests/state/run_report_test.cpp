// Where the items of a run are, as its row in the history says.

#include "state/run_report.h"

#include <gmock/gmock.h>

#include "state/store_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RunReportTest : public StoreHome {
protected:
    const fs::path junk = testHome() / "Junk";

    RunReportTest() { offerItemsOf(junk); }

    void cleaned(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            writeFile(junk / name, name);
        }
        scannedStore();
        clean();
        ASSERT_EQ(store_->history().at(0).moves.size(), names.size());
    }
    RunReport report() const { return reportOn(store_->itemsOf(store_->history().at(0))()); }
    static void empty(const std::string& name) {
        fs::remove(trashFiles() / name);
        fs::remove(trashInfo() / (name + ".trashinfo"));
    }
};

TEST_F(RunReportTest, ItemsThatWaitInTheTrashNeedNoLines) {
    cleaned({"a", "b"});
    EXPECT_EQ(report(), (RunReport{.inTrash = 2}));
    EXPECT_EQ(report().summary(), "2 items are in the Trash.");
}

TEST_F(RunReportTest, TellsWhyEachOtherItemIsNotBack) {
    cleaned({"back", "changed\nna\xE2\x80\xAEme", "gone", "ready", "taken"});
    fs::rename(trashFiles() / "back", junk / "back");
    fs::remove(trashInfo() / "back.trashinfo");
    empty("gone");
    writeFile(junk / "taken", "something new");
    fs::remove(trashInfo() / "changed\nna\xE2\x80\xAEme.trashinfo");
    EXPECT_EQ(report(), (RunReport{.inTrash = 2,
                                   .back = 1,
                                   .gone = 2,
                                   .lines = {"taken: something else is in its place now",
                                             "changed\xEF\xBF\xBDna\xEF\xBF\xBDme: no longer in the Trash",
                                             "gone: no longer in the Trash"},
                                   .more = 0}));
    EXPECT_EQ(report().summary(), "1 item is back. 2 items are in the Trash, 2 no longer.");
}

TEST_F(RunReportTest, TellsOfPlacesThatMayNotBeWritten) {
    cleaned({"a"});
    fs::permissions(junk, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_THAT(report().lines, ElementsAre("a: Vesk may not put it back there"));
    fs::permissions(junk, fs::perms::owner_all);
    fs::remove_all(junk);
    writeFile(junk, "a file where the folder was");
    EXPECT_THAT(report().lines, ElementsAre("a: it cannot be put back at the moment"));
    fs::remove(junk);
    makeLink(junk, "nowhere");
    EXPECT_THAT(report().lines, ElementsAre("a: it cannot be put back at the moment"));
    fs::remove(junk);
    EXPECT_THAT(report().lines, IsEmpty()) << "a folder that is missing is made";
    fs::permissions(trashFiles(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_THAT(report().lines, ElementsAre("a: Vesk may not put it back there"));
    fs::permissions(trashFiles(), fs::perms::none);
    EXPECT_THAT(report().lines, ElementsAre("a: Vesk may not put it back there"));
    fs::permissions(trashFiles(), fs::perms::owner_all);
    EXPECT_EQ(contentOf(trashFiles() / "a"), "a") << "nothing is touched";
}

TEST_F(RunReportTest, WorksAfterARestart) {
    cleaned({"a", "b"});
    writeFile(junk / "a", "something new");
    undo();
    store_.reset();
    makeStore();
    EXPECT_EQ(report().summary(), "1 item is back. 1 item is in the Trash.");
    EXPECT_THAT(report().lines, ElementsAre("a: something else is in its place now"));
}

TEST_F(RunReportTest, WithoutAReceiptNothingCountsAsBack) {
    cleaned({"a"});
    undo();
    fs::remove_all(testHome() / ".config/vesk/receipts");
    EXPECT_EQ(report().summary(), "1 item is no longer in the Trash.");
}

TEST_F(RunReportTest, OfManyItemsTheFirstAreNamedAndTheRestCounted) {
    std::vector<std::string> names;
    for (int number = 100; number < 140; ++number) {
        names.push_back(std::to_string(number));
    }
    cleaned(names);
    for (const std::string& name : names) {
        name < "138" ? empty(name) : writeFile(junk / name, "something new");
    }
    EXPECT_THAT(report().lines, ElementsAre("138: something else is in its place now",
                                            "139: something else is in its place now", "100: no longer in the Trash",
                                            "101: no longer in the Trash", "102: no longer in the Trash"));
    EXPECT_EQ(report().more, 35U);
    EXPECT_EQ(report().summary(), "2 items are in the Trash, 38 no longer.");
}

TEST_F(RunReportTest, EndsEarlyWhenNobodyWantsItAnyMore) {
    cleaned({"a", "b", "c"});
    int asked = 0;
    const RunReport cut = reportOn(store_->itemsOf(store_->history().at(0))(), [&] { return ++asked == 2; });
    EXPECT_EQ(cut.inTrash, 1U);
}

}  // namespace
}  // namespace vesk

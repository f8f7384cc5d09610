// Items that were offered for their age but used between the scan and the clean.

#include <gmock/gmock.h>

#include "rules/rules.h"
#include "state/store_home.h"
#include "support/private_mounts.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class NewerItemsTest : public StoreHome {
protected:
    NewerItemsTest() { stopClock(now()); }

    // Makes files that were last changed and read at this time, and their folders with them.
    static void makeOld(const std::vector<fs::path>& files, Date at = daysAgo(90)) {
        for (const fs::path& file : files) {
            makeFile(file);
            for (fs::path item = file; item != testHome(); item = item.parent_path()) {
                setDates(item, at);
            }
        }
    }

    void scanWith(std::vector<Card> (*rule)(Probe&)) {
        rules_.push_back({"rule", rule});
        scannedStore();
        for (const Card& card : store_->cards()) {
            store_->setSelected(QString::fromStdString(card.id), true);
        }
    }

    // The names of the items that a clean moves now.
    std::vector<std::string> cleaned() {
        clean();
        std::vector<std::string> names;
        for (const HistoryEntry::Move& move : store_->history().at(0).moves) {
            names.push_back(fs::path(move.original).filename());
        }
        return names;
    }

    std::int64_t failures() const { return store_->celebration()->failures; }

    const fs::path downloads = testHome() / "Downloads";
    const fs::path reports = testHome() / "Library/Logs/DiagnosticReports";
    const fs::path support = testHome() / "Library/Application Support";
};

TEST_F(NewerItemsTest, ADownloadChangedSinceTheScanStays) {
    makeOld({downloads / "edited", downloads / "folder/file", downloads / "old"});
    scanWith(rules::oldDownloads);
    ASSERT_EQ(store_->cards().at(0).entries.size(), 3U);
    makeFile(downloads / "edited", 8192);
    makeFile(downloads / "folder/new");
    EXPECT_THAT(cleaned(), ElementsAre("old"));
    EXPECT_EQ(failures(), 2);
    EXPECT_EQ(contentOf(downloads / "edited").size(), 8192U);
    EXPECT_TRUE(store_->cards().empty()) << "the scan that follows sees that they are in use";
}

TEST_F(NewerItemsTest, ADownloadOpenedSinceTheScanStays) {
    makeOld({downloads / "opened", downloads / "old"});
    scanWith(rules::oldDownloads);
    setDates(downloads / "opened", daysAgo(90), daysAgo(0));
    EXPECT_THAT(cleaned(), ElementsAre("old"));
    EXPECT_EQ(failures(), 1);
}

TEST_F(NewerItemsTest, ADownloadReplacedByANewerOneStays) {
    makeOld({downloads / "a"});
    scanWith(rules::oldDownloads);
    writeFile(testHome() / "new", "new");
    fs::rename(testHome() / "new", downloads / "a");
    EXPECT_THAT(cleaned(), IsEmpty());
    EXPECT_EQ(contentOf(downloads / "a"), "new");
}

TEST_F(NewerItemsTest, ALinkAmongTheDownloadsIsComparedByItsOwnDates) {
    if (!privateMountsAreAllowed()) {
        GTEST_SKIP() << "no mount namespaces here, so that following a link counts as a use";
    }
    makeOld({testHome() / "elsewhere/file", downloads / "old"});
    makeLink(downloads / "link", testHome() / "elsewhere");
    setDates(downloads / "link", daysAgo(90));
    scanWith(rules::oldDownloads);
    ASSERT_EQ(store_->cards().at(0).entries.size(), 2U);
    makeFile(testHome() / "elsewhere/new");
    EXPECT_THAT(cleaned(), UnorderedElementsAre("link", "old"));
}

TEST_F(NewerItemsTest, ACrashReportWrittenSinceTheScanStaysAndOneOnlyReadDoesNot) {
    makeOld({reports / "written", reports / "read"});
    scanWith(rules::oldCrashReports);
    makeFile(reports / "written", 8192);
    setDates(reports / "read", daysAgo(90), daysAgo(0));
    EXPECT_THAT(cleaned(), ElementsAre("read"));
    EXPECT_EQ(failures(), 1);
}

TEST_F(NewerItemsTest, ALeftoverFolderChangedSinceTheScanStays) {
    makeOld({support / "Changed/file", support / "Gone/file"});
    scanWith(Scanner::orphanCard);
    ASSERT_EQ(store_->cards().at(0).entries.size(), 2U);
    makeFile(support / "Changed/saved game");
    EXPECT_THAT(cleaned(), ElementsAre("Gone"));
    EXPECT_EQ(failures(), 1);
}

TEST_F(NewerItemsTest, AFolderOfAProjectBuiltAgainSinceTheScanStays) {
    for (const char* project : {"built", "idle"}) {
        makeOld({testHome() / "code" / project / "node_modules/a", testHome() / "code" / project / "package.json"});
    }
    // The rule ignores the folder's own date, so that need not be old.
    setDates(testHome() / "code/idle/node_modules", daysAgo(1));
    scanWith(Scanner::projectCards);
    ASSERT_EQ(store_->cards().at(0).entries.size(), 2U);
    makeFile(testHome() / "code/built/node_modules/new");
    clean();
    EXPECT_TRUE(isThere(testHome() / "code/built/node_modules/new"));
    EXPECT_FALSE(isThere(testHome() / "code/idle/node_modules"));
    EXPECT_EQ(failures(), 1);
}

TEST_F(NewerItemsTest, ACacheIsMovedHoweverNewItIs) {
    makeOld({testHome() / "Library/Caches/app/file"});
    scanWith(rules::appCaches);
    makeFile(testHome() / "Library/Caches/app/new");
    EXPECT_THAT(cleaned(), ElementsAre("app"));
    EXPECT_EQ(failures(), 0);
}

}  // namespace
}  // namespace vesk

// Old items in Downloads.

#include "platform/files/files.h"
#include "rules/rule_test.h"
#include "rules/rules.h"
#include "support/file_names.h"
#include "support/private_mounts.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class OldDownloads : public RuleTest {
protected:
    OldDownloads() { stopClock(now()); }
    static std::filesystem::path downloads() { return testHome() / "Downloads"; }
};

TEST_F(OldDownloads, AreThoseWithBothDatesBeforeTheCutOff) {
    const struct {
        const char* name;
        double modified;
        double accessed;
        bool offered;
    } cases[] = {
        {"both before", sixtyDays + 1, sixtyDays + 1, true},     {"modified at", sixtyDays, sixtyDays + 1, false},
        {"modified after", sixtyDays - 1, sixtyDays + 1, false}, {"accessed at", sixtyDays + 1, sixtyDays, false},
        {"accessed after", sixtyDays + 1, sixtyDays - 1, false}, {"both after", 0, 0, false},
        {"in the future", -86'400, sixtyDays + 1, false},        {".hidden", sixtyDays + 1, sixtyDays + 1, true},
    };
    std::vector<std::string> expected;
    for (const auto& [name, modified, accessed, offered] : cases) {
        makeFile(downloads() / name);
        setDates(downloads() / name, secondsAgo(modified), secondsAgo(accessed));
        if (offered) {
            expected.push_back(std::string("Downloads/") + name + ": " + name);
        }
    }
    EXPECT_THAT(linesOf(run(rules::oldDownloads)), ::testing::UnorderedElementsAreArray(expected));
}

TEST_F(OldDownloads, AreFoldersByTheirOwnDatesButDormantByTheirContents) {
    makeFile(downloads() / "old folder/new file");
    setDates(downloads() / "old folder/new file", daysAgo(12));
    setDates(downloads() / "old folder", daysAgo(90));
    makeFile(downloads() / "new folder/old file");
    setDates(downloads() / "new folder/old file", daysAgo(90));
    const RuleResult result = run(rules::oldDownloads);
    EXPECT_THAT(linesOf(result), ElementsAre("Downloads/old folder: old folder"));
    EXPECT_NEAR(result.cards.at(0).dormancyDays, 12, 1e-6);
    EXPECT_EQ(result.cards.at(0).entries.at(0).lastUsed, daysAgo(12));
    EXPECT_FALSE(result.cards.at(0).selected);
}

TEST_F(OldDownloads, StayOldHoweverOftenTheyAreScanned) {
    makeFile(downloads() / "folder/inner/file");
    for (const char* name : {"folder/inner/file", "folder/inner", "folder"}) {
        setDates(downloads() / name, daysAgo(70), daysAgo(80));
    }
    for (int scan = 0; scan < 3; ++scan) {
        EXPECT_THAT(linesOf(run(rules::oldDownloads)), ElementsAre("Downloads/folder: folder"));
    }
}

TEST_F(OldDownloads, LinksStayOldHoweverOftenTheyAreScanned) {
    if (!privateMountsAreAllowed()) {
        GTEST_SKIP() << "no mount namespaces here";
    }
    makeFile(testRoot() / "elsewhere/file", 8192);
    makeLink(downloads() / "link", testRoot() / "elsewhere");
    makeLink(downloads() / "dangling", testRoot() / "nowhere");
    for (const char* name : {"link", "dangling"}) {
        setDates(downloads() / name, daysAgo(70), daysAgo(80));
    }
    for (int scan = 0; scan < 3; ++scan) {
        EXPECT_THAT(linesOf(run(rules::oldDownloads)), ElementsAre("Downloads/link: link")) << scan;
    }
    EXPECT_EQ(resourceValues(downloads() / "link")->contentAccessDate, daysAgo(80));
    EXPECT_EQ(resourceValues(downloads() / "dangling")->contentAccessDate, daysAgo(80));
}

TEST_F(OldDownloads, ThatAreLinksAreJudgedByThemselvesAndMeasuredByWhatTheyLeadTo) {
    makeFile(testRoot() / "new folder/file", 8192);
    setDates(testRoot() / "new folder/file", daysAgo(3));
    makeFile(testRoot() / "old folder/file", 8192);
    for (const char* old : {"old folder/file", "old folder"}) {
        setDates(testRoot() / old, daysAgo(90));
    }
    makeLink(downloads() / "old link", testRoot() / "new folder");
    makeLink(downloads() / "old link to a file", testRoot() / "new folder/file");
    setDates(downloads() / "old link", daysAgo(90));
    setDates(downloads() / "old link to a file", daysAgo(90));
    makeLink(downloads() / "new link", testRoot() / "old folder");
    const RuleResult result = run(rules::oldDownloads);
    // A walk does not follow the link, so a link to a file has nothing to measure.
    EXPECT_THAT(linesOf(result), ElementsAre("Downloads/old link: old link"));
    EXPECT_EQ(result.cards.at(0).entries.at(0).size, allocated(testRoot() / "new folder/file"));
    EXPECT_EQ(result.cards.at(0).entries.at(0).lastUsed, daysAgo(3));
}

TEST_F(OldDownloads, KeepTheirNamesInEitherUnicodeForm) {
    VESK_NEEDS_NAMES("caf\xC3\xA9.pdf", "cafe\xCC\x81.pdf", "bad\xFF.pdf");
    for (const char* name : {"caf\xC3\xA9.pdf", "cafe\xCC\x81.pdf"}) {
        makeFile(downloads() / name);
        setDates(downloads() / name, daysAgo(90));
    }
    makeFile(downloads() / "bad\xFF.pdf");
    setDates(downloads() / "bad\xFF.pdf", daysAgo(90));
    EXPECT_THAT(linesOf(run(rules::oldDownloads)), UnorderedElementsAre("Downloads/caf\xC3\xA9.pdf: caf\xC3\xA9.pdf",
                                                                        "Downloads/cafe\xCC\x81.pdf: cafe\xCC\x81.pdf",
                                                                        "Downloads/bad\xFF.pdf: bad\xEF\xBF\xBD.pdf"));
}

TEST_F(OldDownloads, LeaveOutEmptyFilesAndDanglingLinks) {
    makeFile(downloads() / "empty", 0);
    makeLink(downloads() / "dangling", testRoot() / "nowhere");
    makeFolder(downloads() / "empty folder");
    for (const char* name : {"empty", "dangling", "empty folder"}) {
        setDates(downloads() / name, daysAgo(90));
    }
    EXPECT_THAT(run(rules::oldDownloads).cards, IsEmpty());
}

TEST_F(OldDownloads, AreNothingWithoutTheFolder) {
    const RuleResult missing = run(rules::oldDownloads);
    EXPECT_THAT(missing.cards, IsEmpty());
    EXPECT_FALSE(missing.blocked);
    makeFolder(downloads());
    EXPECT_THAT(run(rules::oldDownloads).cards, IsEmpty());
}

TEST_F(OldDownloads, SayWhenTheyMayNotBeListed) {
    makeFile(downloads() / "file");
    setDates(downloads() / "file", daysAgo(90));
    {
        const Denied folder(downloads());
        const RuleResult result = run(rules::oldDownloads);
        EXPECT_THAT(result.cards, IsEmpty());
        EXPECT_TRUE(result.blocked);
    }
    // A folder that may be listed but not searched: every stat call fails, but no listing is denied.
    std::filesystem::permissions(downloads(), std::filesystem::perms::owner_read);
    const RuleResult result = run(rules::oldDownloads);
    std::filesystem::permissions(downloads(), std::filesystem::perms::owner_all);
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_FALSE(result.blocked);
}

}  // namespace
}  // namespace vesk

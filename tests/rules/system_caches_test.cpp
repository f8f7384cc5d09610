// Browser clones, application caches and old crash reports.

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

using BrowserClones = RuleTest;
using AppCaches = RuleTest;
using CrashReports = RuleTest;

std::filesystem::path folders() {
    return testRoot() / "private/var/folders";
}

std::filesystem::path caches() {
    return testHome() / "Library/Caches";
}

std::filesystem::path reports() {
    return testHome() / "Library/Logs/DiagnosticReports";
}

TEST_F(BrowserClones, AreFoundInTheFolderXTwoLevelsDown) {
    VESK_NEEDS_NAMES("X", "x");
    makeFile(folders() / "a/b/X/code_sign_clone.1/file");
    makeFile(folders() / "a/b/X/my.code_sign_clone");
    makeFile(folders() / "a/b/X/other/file");
    makeFile(folders() / "a/b/Y/code_sign_clone.2/file");
    makeFile(folders() / "a/b/x/code_sign_clone.3/file");
    makeFile(folders() / "a/X/code_sign_clone.4/file");
    makeFile(folders() / "a/b/c/X/code_sign_clone.5/file");
    makeFile(folders() / "a/b/X/deeper/code_sign_clone.6/file");
    EXPECT_THAT(linesOf(run(rules::browserClones)),
                UnorderedElementsAre("private/var/folders/a/b/X/code_sign_clone.1: Chrome ghost clone",
                                     "private/var/folders/a/b/X/my.code_sign_clone: Chrome ghost clone"));
}

TEST_F(BrowserClones, AreBravesInAnyCaseButMarkedInLowerCaseOnly) {
    makeFile(folders() / "a/b/X/com.BRAVE.code_sign_clone/file");
    makeFile(folders() / "a/b/X/com.Brave.Code_Sign_Clone/file");
    EXPECT_THAT(linesOf(run(rules::browserClones)),
                ElementsAre("private/var/folders/a/b/X/com.BRAVE.code_sign_clone: Brave ghost clone"));
}

TEST_F(BrowserClones, MeasureTheFolderBehindALinkButNotADanglingOne) {
    makeFile(testRoot() / "elsewhere/file", 8192);
    makeLink(folders() / "a/b/X/code_sign_clone.1", testRoot() / "elsewhere");
    makeLink(folders() / "a/b/X/code_sign_clone.2", testRoot() / "nowhere");
    makeFolder(folders() / "a/b/X/code_sign_clone.empty");
    const RuleResult result = run(rules::browserClones);
    EXPECT_THAT(linesOf(result), ElementsAre("private/var/folders/a/b/X/code_sign_clone.1: Chrome ghost clone"));
    EXPECT_EQ(result.cards.at(0).size(), allocated(testRoot() / "elsewhere/file"));
}

TEST_F(BrowserClones, NeverReportADeniedListing) {
    makeFile(folders() / "a/b/X/code_sign_clone/file");
    makeFile(folders() / "a/c/X/code_sign_clone/file");
    {
        const Denied folder(folders() / "a/b");
        const RuleResult result = run(rules::browserClones);
        EXPECT_THAT(linesOf(result), ElementsAre("private/var/folders/a/c/X/code_sign_clone: Chrome ghost clone"));
        EXPECT_FALSE(result.blocked);
    }
    const Denied all(folders());
    const RuleResult result = run(rules::browserClones);
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_FALSE(result.blocked);
}

TEST_F(BrowserClones, GiveNoCardWhereThereAreNone) {
    EXPECT_THAT(run(rules::browserClones).cards, IsEmpty());
    makeFolder(folders() / "a/b/X/code_sign_clone");
    EXPECT_THAT(run(rules::browserClones).cards, IsEmpty());
}

TEST_F(AppCaches, AreAllButThoseOfTheSystemAndOfOtherRules) {
    VESK_NEEDS_NAMES("Homebrew", "homebrew");
    const struct {
        const char* name;
        bool offered;
    } cases[] = {
        {"com.apple.Safari", false},
        {"com.apple.", false},
        {"com.applesauce", true},
        {"Com.apple.", true},
        {"Adobe", false},
        {"Adobe Dng", false},
        {"adobe", true},
        {".hidden", false},
        {"Homebrew", false},
        {"Homebrew2", true},
        {"homebrew", true},
        {"pip", false},
        {"pip-tools", true},
        {"pnpm", false},
        {"huggingface", false},
        {"torch", false},
        {"CloudKit", false},
        {"cloudkit", true},
        {"a file", true},
    };
    std::vector<std::string> offered;
    for (const auto& [name, isOffered] : cases) {
        makeFile(caches() / name / "file");
        if (isOffered) {
            offered.push_back(std::string("Library/Caches/") + name + ": " + name);
        }
    }
    makeFile(caches() / "plain", 4096);
    offered.emplace_back("Library/Caches/plain: plain");
    const RuleResult result = run(rules::appCaches);
    EXPECT_THAT(linesOf(result), ::testing::UnorderedElementsAreArray(offered));
    EXPECT_FALSE(result.blocked);
}

TEST_F(AppCaches, AreNotMountsWhateverTheyHold) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    makeFile(caches() / "app/file");
    makeFolder(caches() / "net");
    makeFolder(caches() / "disk");
    ASSERT_TRUE(mountTemporaryFileSystem(caches() / "disk"));
    makeFile(caches() / "disk/file");
    // The home inside itself: a walk that entered it would count everything twice. Among automounts, it would never
    // end.
    ASSERT_TRUE(mountFolderAgain(testHome(), caches() / "net"));
    EXPECT_THAT(linesOf(run(rules::appCaches)), ElementsAre("Library/Caches/app: app"));
    unmount(caches() / "net");
    unmount(caches() / "disk");
}

TEST_F(AppCaches, CarryTheVendorsName) {
    makeFile(caches() / "com.acme.Editor/file");
    EXPECT_THAT(linesOf(run(rules::appCaches)), ElementsAre("Library/Caches/com.acme.Editor: Acme"));
}

TEST_F(AppCaches, WithNamesThatAreNotUtf8AreShownAndKeepTheirPlace) {
    VESK_NEEDS_NAMES("caf\xE9");
    makeFile(caches() / "caf\xE9/file");
    const RuleResult result = run(rules::appCaches);
    ASSERT_EQ(result.cards.size(), 1U);
    EXPECT_EQ(result.cards[0].entries.at(0).name, "caf\xEF\xBF\xBD");
    EXPECT_EQ(result.cards[0].entries.at(0).url, caches() / "caf\xE9");
}

TEST_F(AppCaches, OfNothingButEmptyItemsAreNoCard) {
    makeFolder(caches() / "empty folder");
    makeFile(caches() / "folder/empty file", 0);
    makeFile(caches() / "empty file", 0);
    EXPECT_THAT(run(rules::appCaches).cards, IsEmpty());
    makeFile(caches() / "full/file");
    EXPECT_THAT(linesOf(run(rules::appCaches)), ElementsAre("Library/Caches/full: full"));
}

TEST_F(AppCaches, SayWhenTheyMayNotBeListed) {
    makeFile(caches() / "one/file");
    const Denied folder(caches());
    const RuleResult result = run(rules::appCaches);
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_TRUE(result.blocked);
}

TEST_F(AppCaches, SayNothingOfAMissingFolderOrAFileInItsPlace) {
    EXPECT_FALSE(run(rules::appCaches).blocked);
    makeFile(caches());
    const RuleResult result = run(rules::appCaches);
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_FALSE(result.blocked);
}

TEST_F(CrashReports, AreFilesOlderThanAWeek) {
    stopClock(now());
    const struct {
        const char* name;
        double age;
    } files[] = {{"before", 604'801}, {"at", 604'800}, {"after", 604'799}};
    for (const auto& [name, age] : files) {
        makeFile(reports() / name);
        setDates(reports() / name, secondsAgo(age), secondsAgo(0));
    }
    makeFile(reports() / "folder/file");
    setDates(reports() / "folder/file", daysAgo(30));
    setDates(reports() / "folder", daysAgo(30));
    EXPECT_THAT(linesOf(run(rules::oldCrashReports)),
                ElementsAre("Library/Logs/DiagnosticReports/before: Crash report"));
}

TEST_F(CrashReports, OfNothingButEmptyFilesAreNoCard) {
    for (const char* name : {"a", "Retired/b"}) {
        makeFile(reports() / name, 0);
        setDates(reports() / name, daysAgo(10));
    }
    EXPECT_THAT(run(rules::oldCrashReports).cards, IsEmpty());
}

TEST_F(CrashReports, OfBothFoldersComeInTheFoldersOrder) {
    for (const char* name : {"Retired/a", "z", "b"}) {
        makeFile(reports() / name);
        setDates(reports() / name, daysAgo(10));
    }
    setDates(reports() / "Retired", daysAgo(10));
    EXPECT_THAT(
        linesOf(run(rules::oldCrashReports)),
        ElementsAre("Library/Logs/DiagnosticReports/b: Crash report", "Library/Logs/DiagnosticReports/z: Crash report",
                    "Library/Logs/DiagnosticReports/Retired/a: Crash report"));
}

TEST_F(CrashReports, BehindALinkAreJudgedByTheLinksOwnDate) {
    makeFile(testHome() / "report");
    setDates(testHome() / "report", daysAgo(30));
    makeLink(reports() / "new link", testHome() / "report");
    makeLink(reports() / "old dangling link", testHome() / "nowhere");
    setDates(reports() / "old dangling link", daysAgo(30));
    EXPECT_THAT(run(rules::oldCrashReports).cards, IsEmpty());
}

TEST_F(CrashReports, SayWhenEitherFolderMayNotBeListed) {
    makeFile(reports() / "a");
    setDates(reports() / "a", daysAgo(10));
    makeFile(reports() / "Retired/b");
    {
        const Denied folder(reports() / "Retired");
        const RuleResult result = run(rules::oldCrashReports);
        EXPECT_EQ(linesOf(result).size(), 1U);
        EXPECT_TRUE(result.blocked);
    }
    EXPECT_FALSE(run(rules::oldCrashReports).blocked);
    const Denied folder(reports());
    EXPECT_TRUE(run(rules::oldCrashReports).blocked);
}

}  // namespace
}  // namespace vesk

// Support folders of applications that are no longer installed.

#include "platform/files/files.h"
#include "rules/rule_test.h"
#include "rules/rules.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Leftovers : public RuleTest {
protected:
    Leftovers() { stopClock(now()); }

    static std::filesystem::path support() { return testHome() / "Library/Application Support"; }

    // A support folder with one file; ages in seconds.
    static void makeSupport(const std::string& name, double folderAge = 90 * 86'400, double fileAge = 90 * 86'400) {
        makeFile(support() / name / "file");
        setDates(support() / name / "file", secondsAgo(fileAge));
        setDates(support() / name, secondsAgo(folderAge));
    }

    static void install(const std::filesystem::path& application, const std::string& identifier = "") {
        makeFolder(application);
        if (!identifier.empty()) {
            writeFile(application / "Contents/Info.plist",
                      "<plist><dict><key>CFBundleIdentifier</key><string>" + identifier + "</string></dict></plist>");
        }
    }

    static bool offers(const std::string& name) {
        makeSupport(name);
        const RuleResult result = run(Scanner::orphanCard);
        std::filesystem::remove_all(support() / name);
        return !result.cards.empty();
    }
};

TEST_F(Leftovers, AreOldFoldersOfNobody) {
    makeSupport("Gone");
    makeSupport("com.vendor.game");
    makeFile(support() / "a file");
    setDates(support() / "a file", daysAgo(90));
    makeFile(testRoot() / "elsewhere/file");
    makeLink(support() / "a link", testRoot() / "elsewhere");
    setDates(support() / "a link", daysAgo(90));
    const RuleResult result = run(Scanner::orphanCard);
    EXPECT_THAT(linesOf(result), ElementsAre("Library/Application Support/Gone: Gone",
                                             "Library/Application Support/com.vendor.game: Vendor"));
    EXPECT_NEAR(result.cards.at(0).dormancyDays, 90, 1e-6);
    EXPECT_FALSE(result.cards.at(0).selected);
    EXPECT_FALSE(result.blocked);
}

TEST_F(Leftovers, AreOldByTheirOwnDateAndByTheNewestInside) {
    const struct {
        double folderAge;
        double fileAge;
        bool offered;
    } cases[] = {
        {sixtyDays + 1, sixtyDays + 1, true},  {sixtyDays, sixtyDays + 1, false},
        {sixtyDays - 1, sixtyDays + 1, false}, {sixtyDays + 1, sixtyDays, false},
        {sixtyDays + 1, sixtyDays - 1, false}, {90 * 86'400, 7 * 86'400, false},
        {59 * 86'400, 90 * 86'400, false},
    };
    for (const auto& [folderAge, fileAge, offered] : cases) {
        makeSupport("Gone", folderAge, fileAge);
        EXPECT_EQ(run(Scanner::orphanCard).cards.size(), offered ? 1U : 0U) << folderAge << " " << fileAge;
    }
}

TEST_F(Leftovers, ChangedLongAgoButReadLatelyAreInUse) {
    makeSupport("Gone");
    setDates(support() / "Gone/file", daysAgo(90), daysAgo(3));
    EXPECT_THAT(run(Scanner::orphanCard).cards, IsEmpty());
}

TEST_F(Leftovers, AreNeverTheSystemsOwnFolders) {
    for (const char* name : {"Apple",
                             "AddressBook",
                             "CallHistoryDB",
                             "CallHistoryTransactions",
                             "CloudDocs",
                             "Dock",
                             "iCloud",
                             "Knowledge",
                             "MobileSync",
                             "SyncServices",
                             "Caches",
                             "CrashReporter",
                             "App Store",
                             "Animoji",
                             "FaceTime",
                             "com.apple.TCC",
                             "DifferentialPrivacy",
                             "FileProvider",
                             "CloudKit",
                             "Adobe",
                             "Quick Look",
                             "networkserviceproxy",
                             "default.store",
                             "Steam",
                             "Homebrew",
                             "Code",
                             "Claude",
                             ".hidden",
                             "com.apple",
                             "com.apple.anything",
                             "com.applesauce.tool",
                             "QQ",
                             "a-b",
                             "- -"}) {
        EXPECT_FALSE(offers(name)) << name;
    }
    // Compared exactly.
    for (const char* name : {"apple", "steam", "Steam2", "Com.apple.tool", "QQQ", "quick look", "org.apple.x"}) {
        EXPECT_TRUE(offers(name)) << name;
    }
}

TEST_F(Leftovers, BelongToApplicationsByNameOrIdentifierEitherWayRound) {
    install(testRoot() / "Applications/Notes.app");
    install(testRoot() / "Applications/Acme Studio.app");
    install(testRoot() / "Applications/Tool.app", "com.example.tool-x");
    install(testRoot() / "Applications/Go.app");
    install(testRoot() / "Applications/Caf\xC3\xA9 Noir.app");
    const std::pair<const char*, bool> cases[] = {
        {"Notes", false},       {"notes", false},
        {"My Notes 2", false},  {"Acme", false},
        {"acme_studio", false}, {"Acme Studio Pro", false},
        {"stu", false},         {"com.example.tool-x", false},
        {"com.example", false}, {"com.example.tool.x.helper", false},
        {"example", false},     {"com.example.editor", true},
        {"Gopher", true},       {"Cafe\xCC\x81 Noir", false},
        {"CAF\xC3\x89", false}, {"Cafe Noir", true},
        {"Note", false},        {"Acme Editor", true},
    };
    for (const auto& [name, offered] : cases) {
        EXPECT_EQ(offers(name), offered) << name;
    }
}

TEST_F(Leftovers, BelongToApplicationsOfFivePlacesAndOneFolderDeeper) {
    const struct {
        std::filesystem::path application;
        bool seen;
    } cases[] = {
        {testRoot() / "Applications/Gone.app", true},
        {testRoot() / "Applications/Suite/Gone.app", true},
        {testRoot() / "Applications/Suite/Inner/Gone.app", false},
        {testRoot() / "Applications/Other.app/Gone.app", false},
        {testRoot() / "Applications/Utilities/Gone.app", true},
        {testRoot() / "Applications/Utilities/Suite/Gone.app", true},
        {testRoot() / "System/Applications/Gone.app", true},
        {testRoot() / "System/Applications/Utilities/Gone.app", true},
        {testRoot() / "System/Gone.app", false},
        {testHome() / "Applications/Gone.app", true},
        {testHome() / "Applications/Web/Gone.app", true},
        {testHome() / "Gone.app", false},
        {testRoot() / "Applications/Gone.APP", false},
        {testRoot() / "Applications/Gone.app.zip", false},
    };
    for (const auto& [application, seen] : cases) {
        install(application);
        EXPECT_EQ(offers("Gone"), !seen) << application;
        std::filesystem::remove_all(application);
    }
    // A link or a file with an application's name counts as one; a link to a folder of applications is not searched.
    makeLink(testRoot() / "Applications/Gone.app", testRoot() / "nowhere");
    EXPECT_FALSE(offers("Gone"));
    std::filesystem::remove(testRoot() / "Applications/Gone.app");
    install(testRoot() / "elsewhere/Gone.app");
    makeLink(testRoot() / "Applications/Linked", testRoot() / "elsewhere");
    EXPECT_TRUE(offers("Gone"));
}

TEST_F(Leftovers, BelongToApplicationsWithAListInAnyForm) {
    const std::filesystem::path list = testRoot() / "Applications/Tool.app/Contents/Info.plist";
    for (const char* form : {"{\n    CFBundleIdentifier = com.example.instrument;\n}\n",
                             "\n\n<?xml version=\"1.0\"?>\n<plist><dict><key>CFBundleIdentifier</key>"
                             "<string>com.example.instrument</string></dict></plist>"}) {
        writeFile(list, form);
        EXPECT_FALSE(offers("com.example.instrument")) << form;
    }
}

TEST_F(Leftovers, OfAnApplicationWithABrokenListAreKnownByItsNameAlone) {
    install(testRoot() / "Applications/Tool.app");
    writeFile(testRoot() / "Applications/Tool.app/Contents/Info.plist", "<plist><dict>");
    EXPECT_FALSE(offers("Tool"));
    EXPECT_TRUE(offers("com.example.instrument"));
}

TEST_F(Leftovers, SayWhenTheyMayNotBeListedButNotSoForApplications) {
    makeSupport("Gone");
    makeFolder(testRoot() / "Applications");
    {
        const Denied folder(testRoot() / "Applications");
        const RuleResult result = run(Scanner::orphanCard);
        EXPECT_EQ(result.cards.size(), 1U);
        EXPECT_FALSE(result.blocked);
    }
    const Denied folder(support());
    const RuleResult result = run(Scanner::orphanCard);
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_TRUE(result.blocked);
}

TEST_F(Leftovers, AreNothingWhenMissingOrEmpty) {
    const RuleResult missing = run(Scanner::orphanCard);
    EXPECT_THAT(missing.cards, IsEmpty());
    EXPECT_FALSE(missing.blocked);
    makeFolder(support() / "Gone");
    setDates(support() / "Gone", daysAgo(90));
    EXPECT_THAT(run(Scanner::orphanCard).cards, IsEmpty());
}

TEST_F(Leftovers, AreFoundWithoutATraceInTheApplications) {
    install(testRoot() / "Applications/Tool.app", "com.example.tool");
    const std::filesystem::path list = testRoot() / "Applications/Tool.app/Contents/Info.plist";
    setDates(list, daysAgo(20), daysAgo(30));
    run(Scanner::orphanCard);
    EXPECT_EQ(resourceValues(list)->contentAccessDate, daysAgo(30));
}

}  // namespace
}  // namespace vesk

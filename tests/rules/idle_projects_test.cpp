// Folders that idle coding projects can rebuild.

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
using ::testing::UnorderedElementsAreArray;

constexpr double fourteenDays = 1'209'600;

class IdleProjects : public RuleTest {
protected:
    IdleProjects() { stopClock(now()); }

    // Makes files of one block at these places of the home, all of them and every folder 30 days old.
    static void makeOld(const std::vector<std::string>& paths) {
        for (const std::string& path : paths) {
            makeFile(testHome() / path);
        }
        makeAllOld();
    }

    static void makeAllOld() {
        std::vector<std::filesystem::path> items;
        for (const auto& item : std::filesystem::recursive_directory_iterator(testHome())) {
            items.push_back(item.path());
        }
        for (const std::filesystem::path& item : items) {
            setDates(item, daysAgo(30));
        }
    }

    static RuleResult found() { return run(Scanner::projectCards); }

    static std::vector<std::string> nodeLines() { return linesOf(found().card("proj-node")); }
};

TEST_F(IdleProjects, GiveOneCardForEachKindInOrder) {
    makeOld({"code/site/package.json", "code/site/target/a", "code/site/Cargo.toml", "code/site/.venv/a",
             "code/site/.next/a", "code/site/node_modules/a"});
    const RuleResult result = found();
    EXPECT_THAT(idsOf(result), ElementsAre("proj-node", "proj-next", "proj-venv", "proj-cargo"));
    EXPECT_THAT(linesOf(result.card("proj-node")), ElementsAre("code/site/node_modules: site"));
    EXPECT_THAT(linesOf(result.card("proj-next")), ElementsAre("code/site/.next: site"));
    EXPECT_THAT(linesOf(result.card("proj-venv")), ElementsAre("code/site/.venv: site"));
    EXPECT_THAT(linesOf(result.card("proj-cargo")), ElementsAre("code/site/target: site"));
    for (const Card& card : result.cards) {
        EXPECT_EQ(card.bucket, Bucket::smart);
        EXPECT_FALSE(card.selected);
        EXPECT_NEAR(card.dormancyDays, 30, 1e-6);
        EXPECT_EQ(card.entries.at(0).lastUsed, daysAgo(30));
        EXPECT_EQ(card.entries.at(0).size, allocated(card.entries.at(0).url / "a"));
    }
}

TEST_F(IdleProjects, AreNotSearchedForWhereOtherThingsAreKept) {
    VESK_NEEDS_NAMES("Documents", "documents");
    std::vector<std::string> expected;
    std::vector<std::string> paths;
    for (const char* root : {"Library", "Documents", "Desktop", "Pictures", "Music", "Movies", "Downloads",
                             "Applications", "Public", ".config", "documents", "Developer", "Desktop 2"}) {
        paths.push_back(std::string(root) + "/app/node_modules/a");
        if (std::string(root) == "documents" || std::string(root).starts_with("De")) {
            expected.push_back(std::string(root) + "/app/node_modules: app");
        }
    }
    std::erase(expected, "Desktop/app/node_modules: app");
    makeOld(paths);
    EXPECT_THAT(nodeLines(), UnorderedElementsAreArray(expected));
    EXPECT_EQ(expected.size(), 3U);
}

TEST_F(IdleProjects, MayBeFoldersOfTheHomeItselfButNotTheHome) {
    makeOld({"app/node_modules/a", "node_modules/b/node_modules/c"});
    // A folder of that name directly in the home is searched like any other.
    EXPECT_THAT(nodeLines(), UnorderedElementsAre("app/node_modules: app", "node_modules/b/node_modules: b"));
}

TEST_F(IdleProjects, AreMatchedByExactNamesAndWhatLiesBeside) {
    VESK_NEEDS_NAMES("package.json", "Package.json");
    makeOld({
        "code/a/venv/x", "code/a/.Venv/x", "code/a/Node_modules/x", "code/a/node_modules2/x",  // other names
        "code/b/target/x", "code/b/cargo.toml",                                                // no Cargo.toml
        "code/c/.next/x", "code/c/Package.json",                                               // no package.json
        "code/d/target", "code/d/Cargo.toml", "code/d/node_modules",                           // files
    });
    EXPECT_THAT(found().cards, IsEmpty());
    makeFolder(testHome() / "code/c/package.json");
    makeLink(testHome() / "code/b/Cargo.toml", testRoot() / "nowhere");
    makeAllOld();
    // What must lie beside it may be a folder.
    EXPECT_THAT(idsOf(found()), ElementsAre("proj-next"));
}

TEST_F(IdleProjects, AreSearchedForInsideAFolderThatOnlyLooksLikeAMatch) {
    makeOld({"code/b/target/inner/node_modules/x", "code/c/.next/inner/node_modules/x",
             "code/.git/modules/node_modules/x"});
    EXPECT_THAT(nodeLines(), ElementsAre("code/b/target/inner/node_modules: inner"));
}

TEST_F(IdleProjects, AreNotSearchedForInsideAMatch) {
    makeOld({"code/a/node_modules/x/node_modules/y", "code/a/.venv/lib/node_modules/y"});
    const RuleResult result = found();
    EXPECT_THAT(linesOf(result.card("proj-node")), ElementsAre("code/a/node_modules: a"));
    EXPECT_THAT(linesOf(result.card("proj-venv")), ElementsAre("code/a/.venv: a"));
    // Nor is a match in an active project.
    makeFile(testHome() / "code/a/new");
    EXPECT_THAT(found().cards, IsEmpty());
}

TEST_F(IdleProjects, AreFoundDownToTheFifthLevel) {
    makeOld({"r/node_modules/x", "r/2/3/4/node_modules/x", "r/1/2/3/4/node_modules/x", "r/1/2/3/4/5/node_modules/x",
             "r/a/b/c/d/e/f/node_modules/x"});
    EXPECT_THAT(nodeLines(),
                UnorderedElementsAre("r/node_modules: r", "r/2/3/4/node_modules: 4", "r/1/2/3/4/node_modules: 4"));
}

TEST_F(IdleProjects, AreNotSearchedForInsidePackages) {
    makeOld({"code/Some.app/a/node_modules/x", "code/Some.XCodeProj/a/node_modules/x",
             "code/Some.photosLibrary/a/node_modules/x", "code/some.project/a/node_modules/x",
             "Root.app/a/node_modules/x"});
    EXPECT_THAT(nodeLines(), UnorderedElementsAre("code/some.project/a/node_modules: a",
                                                  // A folder of the home is searched whatever its name.
                                                  "Root.app/a/node_modules: a"));
}

TEST_F(IdleProjects, AreNotSearchedForBehindLinks) {
    makeOld({"code/real/node_modules/x"});
    makeFile(testRoot() / "elsewhere/app/node_modules/x");
    makeLink(testHome() / "linked root", testRoot() / "elsewhere");
    makeLink(testHome() / "code/linked", testRoot() / "elsewhere/app");
    makeLink(testHome() / "code/app/node_modules", testRoot() / "elsewhere/app/node_modules");
    makeAllOld();
    EXPECT_THAT(nodeLines(), ElementsAre("code/real/node_modules: real"));
}

TEST_F(IdleProjects, ComeToRestTwoWeeksAfterTheLastChange) {
    const struct {
        double age;
        bool offered;
    } cases[] = {{fourteenDays + 1, true}, {fourteenDays, false}, {fourteenDays - 1, false},
                 {13 * 86'400.0, false},   {15 * 86'400.0, true}, {-1000, false}};
    // A change counts beside the matched folder or one level deeper; the folders' own dates count too.
    for (const char* changed :
         {"code/a/file", "code/a/src", "code/a/src/file", "code/a/src/inner", "code/a/.git/HEAD"}) {
        makeOld(
            {"code/a/node_modules/x", "code/a/file", "code/a/src/file", "code/a/src/inner/deep", "code/a/.git/HEAD"});
        for (const auto& [age, offered] : cases) {
            setDates(testHome() / changed, secondsAgo(age), secondsAgo(0));
            EXPECT_EQ(nodeLines().size(), offered ? 1U : 0U) << changed << " changed " << age << " s ago";
        }
    }
}

TEST_F(IdleProjects, AreNotKeptAliveByWhatLiesDeeperOrInTheMatch) {
    makeOld({"code/a/node_modules/x", "code/a/src/lib/file", "code/a/package.json"});
    for (const char* changed : {"code/a/src/lib/file", "code/a/node_modules/x", "code/a/node_modules", "code/a"}) {
        setDates(testHome() / changed, daysAgo(1));
    }
    const RuleResult result = found();
    EXPECT_THAT(linesOf(result.card("proj-node")), ElementsAre("code/a/node_modules: a"));
    // A use of the match is not a use of the project.
    EXPECT_NEAR(result.cards.at(0).dormancyDays, 30, 1e-6);
}

TEST_F(IdleProjects, IgnoreOnlyTheFolderThatIsJudged) {
    makeOld({"code/a/node_modules/x", "code/a/.next/x", "code/a/package.json"});
    setDates(testHome() / "code/a/.next/x", daysAgo(1));
    EXPECT_THAT(idsOf(found()), ElementsAre("proj-next"));
    setDates(testHome() / "code/a/.next/x", daysAgo(30));
    setDates(testHome() / "code/a/node_modules", daysAgo(20));
    const RuleResult result = found();
    EXPECT_THAT(idsOf(result), ElementsAre("proj-node", "proj-next"));
    EXPECT_EQ(result.cards.at(0).entries.at(0).lastUsed, daysAgo(30));
    EXPECT_EQ(result.cards.at(1).entries.at(0).lastUsed, daysAgo(20));
}

TEST_F(IdleProjects, OfNothingButTheMatchHaveNoDate) {
    makeOld({"code/a/node_modules/x"});
    setDates(testHome() / "code/a/node_modules/x", daysAgo(0));
    const RuleResult result = found();
    ASSERT_EQ(result.cards.size(), 1U);
    EXPECT_EQ(result.cards[0].entries.at(0).lastUsed, std::nullopt);
    EXPECT_EQ(result.cards[0].dormancyDays, 30.0);
}

TEST_F(IdleProjects, AreOrderedBySizeAndEmptyOnesLeftOut) {
    makeFile(testHome() / "one/app/node_modules/x", 4096);
    makeFile(testHome() / "two/app/node_modules/x", 100'000);
    makeFolder(testHome() / "two/empty/node_modules");
    makeFile(testHome() / "two/crate/target/x", 0);
    makeFile(testHome() / "two/crate/Cargo.toml");
    makeAllOld();
    const RuleResult result = found();
    EXPECT_THAT(idsOf(result), ElementsAre("proj-node"));
    EXPECT_THAT(linesOf(result.card("proj-node")),
                ElementsAre("two/app/node_modules: app", "one/app/node_modules: app"));
}

TEST_F(IdleProjects, OfEqualSizeComeInTheOrderOfTheirPaths) {
    std::vector<std::string> files;
    std::vector<std::string> expected;
    for (const char* project : {"a/z", "b/a/c", "b/a", "b", "c/1", "c/10", "c/2", "d/B", "d/a", "e/f/g/h"}) {
        files.push_back(std::string("code/") + project + "/node_modules/x");
        const std::string name = std::filesystem::path(project).filename();
        expected.push_back(std::string("code/") + project + "/node_modules: " + name);
    }
    makeOld(files);
    // Which thread finds which is random.
    for (int turn = 0; turn < 5; ++turn) {
        EXPECT_EQ(nodeLines(), expected);
    }
}

TEST_F(IdleProjects, WithNamesThatAreNotUtf8AreShown) {
    VESK_NEEDS_NAMES("caf\xE9");
    makeOld({"code/caf\xE9/node_modules/x", "code/cafe\xCC\x81/node_modules/x"});
    EXPECT_THAT(nodeLines(), UnorderedElementsAre("code/caf\xE9/node_modules: caf\xEF\xBF\xBD",
                                                  "code/cafe\xCC\x81/node_modules: cafe\xCC\x81"));
}

TEST_F(IdleProjects, ReportADenialInsideAProjectAlone) {
    makeOld({"code/a/node_modules/x", "code/a/src/file", "code/closed/inner/file"});
    {
        // On the way: skipped without a report.
        const Denied folder(testHome() / "code/closed");
        const RuleResult result = found();
        EXPECT_THAT(idsOf(result), ElementsAre("proj-node"));
        EXPECT_FALSE(result.blocked);
    }
    {
        // In a project: its dates are not all known.
        const Denied folder(testHome() / "code/a/src");
        setDates(testHome() / "code/a/src", daysAgo(30));
        const RuleResult result = found();
        EXPECT_THAT(idsOf(result), ElementsAre("proj-node"));
        EXPECT_TRUE(result.blocked);
    }
    {
        const Denied folder(testHome() / "code");
        const RuleResult result = found();
        EXPECT_THAT(result.cards, IsEmpty());
        EXPECT_FALSE(result.blocked);
    }
    const Denied home(testHome());
    const RuleResult result = found();
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_FALSE(result.blocked);
}

TEST_F(IdleProjects, WithSeveralMatchesAreMeasuredOnceEach) {
    makeOld({"code/a/node_modules/x", "code/a/.next/x", "code/a/.venv/x", "code/a/package.json", "code/a/src/y"});
    const auto tracker = std::make_shared<Tracker>();
    Probe probe(tracker);
    EXPECT_EQ(Scanner::projectCards(probe).size(), 3U);
    EXPECT_EQ(tracker->counts().files, 3);
}

TEST_F(IdleProjects, AreNotSearchedForOnOtherVolumes) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    makeOld({"code/here/node_modules/x"});
    for (const char* volume : {"code/volume", "code/app/node_modules", "other root"}) {
        makeFolder(testHome() / volume);
        ASSERT_TRUE(mountTemporaryFileSystem(testHome() / volume)) << volume;
    }
    makeOld({"code/volume/app/node_modules/x", "code/app/node_modules/x", "other root/app/node_modules/x"});
    EXPECT_THAT(nodeLines(), ElementsAre("code/here/node_modules: here"));
    for (const char* volume : {"code/volume", "code/app/node_modules", "other root"}) {
        unmount(testHome() / volume);
    }
}

}  // namespace
}  // namespace vesk

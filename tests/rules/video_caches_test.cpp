// Previews and render files of video editors.

#include "rules/rule_test.h"
#include "rules/rules.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class VideoCaches : public RuleTest {
protected:
    static std::vector<std::string> found() { return linesOf(run(rules::videoEditingCaches)); }
};

TEST_F(VideoCaches, AreNothingWithoutAnEditor) {
    const RuleResult result = run(rules::videoEditingCaches);
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_FALSE(result.blocked);
}

TEST_F(VideoCaches, OfAllThreeEditorsAreOneCard) {
    const std::string adobe = "Library/Application Support/Adobe/Common/";
    makeFile(testHome() / "Movies/Trip.fcpbundle/Event/Render Files/x");
    makeFile(testHome() / "Library/Caches/Adobe After Effects 2024/x");
    makeFile(testHome() / adobe / "Peak Files/x");
    makeFile(testHome() / adobe / "Media Cache/x");
    makeFile(testHome() / adobe / "Media Cache Files/x");
    makeFile(testHome() / adobe / "Other/x");
    const RuleResult result = run(rules::videoEditingCaches);
    // All of the same size, so in the order in which they are found.
    EXPECT_THAT(linesOf(result),
                ElementsAre(adobe + "Media Cache Files: Premiere media cache",
                            adobe + "Media Cache: Premiere media cache", adobe + "Peak Files: Premiere audio previews",
                            "Library/Caches/Adobe After Effects 2024: After Effects cache",
                            "Movies/Trip.fcpbundle/Event/Render Files: Final Cut render files"));
    EXPECT_FALSE(result.cards.at(0).selected);
}

TEST_F(VideoCaches, OfAfterEffectsMayBeFilesAndAreMatchedByCase) {
    for (const char* name : {"Adobe After Effects 2024/x", "Adobe After Effects Prefs.txt", "adobe after effects/x",
                             "My Adobe After Effects/x", "Adobe/x"}) {
        makeFile(testHome() / "Library/Caches" / name);
    }
    EXPECT_THAT(found(), UnorderedElementsAre("Library/Caches/Adobe After Effects 2024: After Effects cache",
                                              "Library/Caches/Adobe After Effects Prefs.txt: After Effects cache"));
}

TEST_F(VideoCaches, OfFinalCutLieTwoOrThreeLevelsInsideALibrary) {
    const std::filesystem::path library = testHome() / "Movies/Trip.fcpbundle";
    for (const char* name :
         {"Render Files/x", "Event/Render Files/x", "Event/Transcoded Media/x", "Event/Day/Render Files/x",
          "Event/Day/Transcoded Media/x", "Event/Day/Deep/Render Files/x", "Event/render files/x",
          "Event/Original Media/x", "Event/Day/Render Files 2/x"}) {
        makeFile(library / name);
    }
    const std::string folder = "Movies/Trip.fcpbundle/Event/";
    EXPECT_THAT(found(), UnorderedElementsAre(folder + "Render Files: Final Cut render files",
                                              folder + "Transcoded Media: Final Cut transcoded media",
                                              folder + "Day/Render Files: Final Cut render files",
                                              folder + "Day/Transcoded Media: Final Cut transcoded media"));
}

TEST_F(VideoCaches, OfFinalCutAreInLibrariesByExactExtensionAlone) {
    for (const char* name : {"A.FCPBUNDLE", "B.fcpbundle.zip", "fcpbundle", ".fcpbundle", "C", "Folder/D.fcpbundle"}) {
        makeFile(testHome() / "Movies" / name / "Event/Render Files/x");
    }
    makeFile(testHome() / "Movies/File.fcpbundle");
    const RuleResult result = run(rules::videoEditingCaches);
    EXPECT_THAT(result.cards, IsEmpty());
    EXPECT_FALSE(result.blocked);
}

TEST_F(VideoCaches, FollowLinksToLibrariesAndEventsButNotInsideEvents) {
    makeFile(testRoot() / "Volumes/Disk/Trip.fcpbundle/Event/Day/Render Files/x");
    makeLink(testHome() / "Movies/Trip.fcpbundle", testRoot() / "Volumes/Disk/Trip.fcpbundle");
    makeFile(testRoot() / "Volumes/Disk/Event/Render Files/x", 100'000);
    makeLink(testHome() / "Movies/Other.fcpbundle/Event", testRoot() / "Volumes/Disk/Event");
    makeFile(testRoot() / "Volumes/Disk/Day/Render Files/x");
    makeLink(testHome() / "Movies/Other.fcpbundle/Second/Day", testRoot() / "Volumes/Disk/Day");
    EXPECT_THAT(found(), ElementsAre("Movies/Other.fcpbundle/Event/Render Files: Final Cut render files",
                                     "Movies/Trip.fcpbundle/Event/Day/Render Files: Final Cut render files"));
}

TEST_F(VideoCaches, SayWhenAnyListingIsDenied) {
    const std::filesystem::path movies = testHome() / "Movies";
    makeFile(movies / "Trip.fcpbundle/Event/Day/Render Files/x");
    makeFile(testHome() / "Library/Caches/other/x");
    for (const char* denied : {"Movies", "Movies/Trip.fcpbundle", "Movies/Trip.fcpbundle/Event",
                               "Movies/Trip.fcpbundle/Event/Day", "Library/Caches"}) {
        const Denied folder(testHome() / denied);
        EXPECT_TRUE(run(rules::videoEditingCaches).blocked) << denied;
    }
    EXPECT_FALSE(run(rules::videoEditingCaches).blocked);
    // A denied folder that does not concern this rule.
    const Denied folder(testHome() / "Library/Caches/other");
    EXPECT_FALSE(run(rules::videoEditingCaches).blocked);
}

}  // namespace
}  // namespace vesk

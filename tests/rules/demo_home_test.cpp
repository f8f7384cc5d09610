// The demo's home, on which all rules are tried at once.

#include "demo_home/demo_home.h"

#include <set>
#include <stdexcept>

#include "core/scanner.h"
#include "platform/files/files.h"
#include "rules/catalogue.h"
#include "rules/rule_test.h"
#include "rules/run_tool.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;

// Every card that Vesk can show, in the order of the rules.
const CardDescription expectedCards[] = {
    {"clones", "Chrome ghost clones", "square.on.square.dashed", Bucket::safe, 0.95, 1.0,
     "Leftover copies Chrome and Brave make while updating themselves.",
     "These temporary copies are only used while a browser is being verified or updated. The browser quietly makes a "
     "new one whenever it needs it."},
    {"caches", "App caches", "internaldrive", Bucket::safe, 0.85, 1.5,
     "Temporary files your apps saved to load faster.",
     "Caches are copies of things apps can download or rebuild. Apps may feel a touch slower the first time you open "
     "them afterwards."},
    {"crash", "Old crash reports", "exclamationmark.bubble", Bucket::safe, 0.98, 1.0,
     "Reports about app crashes from over a week ago.",
     "These are only diagnostic notes. Nothing reads them unless you send them to a developer."},
    {"snapshots", "Local Time Machine snapshots", "clock.arrow.circlepath", Bucket::safe, 0.9, 1.5,
     "4 hourly backup copies kept on this Mac (size varies).",
     "Your real backups on the Time Machine disk are untouched. These are extra short-term copies macOS also frees "
     "automatically when space runs low. Note: they can't be put in the Trash, so removing them can't be undone."},
    {"devsupport", "Old iPhone and iPad device files", "iphone", Bucket::smart, 0.85, 2.0,
     "Support files Xcode saved for phones you once plugged in.",
     "Xcode downloads these again the next time you connect that device. Only worth keeping if you develop apps and "
     "reconnect often."},
    {"sims", "Old iPhone and iPad simulator files", "ipad.and.iphone", Bucket::smart, 0.7, 3.0,
     "Pretend phones and tablets used for testing apps.",
     "Simulators can be recreated, but any test data and apps installed inside them would be gone."},
    {"derived", "Old Xcode build leftovers", "hammer", Bucket::smart, 0.9, 1.5,
     "Half-built app pieces Xcode keeps to build faster.",
     "Xcode rebuilds all of this on demand. The next build of each project will just take longer."},
    {"archives", "Xcode app archives", "archivebox", Bucket::smart, 0.5, 4.0,
     "Packaged copies of apps you built for release.",
     "Archives hold the debug symbols needed to understand crashes in released apps. Keep them if an app version is "
     "still in use."},
    {"ai", "Dormant AI models", "brain.head.profile", Bucket::smart, 0.7, 3.0,
     "Downloaded AI models that haven't been used lately.",
     "Models can be downloaded again, but they're often many gigabytes, so only clear the ones you no longer run."},
    {"brew", "Homebrew download cache", "shippingbox", Bucket::smart, 0.9, 1.5,
     "Installer files Homebrew kept after installing tools.", "Homebrew fetches them again whenever it needs them."},
    {"pkg", "Coding package caches", "shippingbox.fill", Bucket::smart, 0.9, 1.5,
     "Saved downloads from npm, pnpm, bun and pip.",
     "These tools redownload packages when needed. Your next install may just be slower."},
    {"proj-node", "Idle website project folders", "chevron.left.forwardslash.chevron.right", Bucket::smart, 0.9, 2.0,
     "Downloaded code libraries (node_modules) in projects you haven't touched for two weeks.",
     "A quick `npm install` brings them back whenever you reopen the project."},
    {"proj-next", "Old Next.js build folders", "globe", Bucket::smart, 0.9, 2.0,
     "Website build output from projects you haven't touched for two weeks.",
     "These are generated each time you build or run the project."},
    {"proj-venv", "Old Python environments", "terminal", Bucket::smart, 0.75, 2.0,
     "Python tool setups in projects you haven't touched for two weeks.",
     "They can be recreated from the project's requirements, but anything installed by hand would need reinstalling."},
    {"proj-cargo", "Old Rust build folders", "gearshape.2", Bucket::smart, 0.9, 2.0,
     "Compiled Rust code from projects you haven't touched for two weeks.",
     "Cargo rebuilds this automatically; the first build afterwards will be slow."},
    {"vms", "Virtual machine disks", "desktopcomputer", Bucket::smart, 0.3, 5.0, "Disk images for UTM and Docker.",
     "These hold entire virtual computers or containers. Removing them deletes everything stored inside, so only do "
     "this if you're sure they're finished with."},
    {"video", "Video editing caches", "film", Bucket::smart, 0.8, 2.0,
     "Preview and render files from Final Cut, Premiere and After Effects.",
     "Your projects and original footage aren't in here. The apps rebuild these previews, but big timelines may need "
     "time to re-render."},
    {"orphans", "Leftovers from apps you removed", "questionmark.folder", Bucket::smart, 0.45, 4.0,
     "Settings and data from apps that no longer seem to be installed.",
     "Vesk can't be certain an app is gone (some live outside Applications), and this may hold saved data like game "
     "progress. Peek inside before choosing."},
    {"downloads", "Downloads older than 60 days", "arrow.down.circle", Bucket::smart, 0.6, 3.0,
     "Files you downloaded long ago and haven't opened since.",
     "They might be installers you're done with, or something you still want. Take a quick look in 'What's inside' "
     "first."},
};

class DemoHome : public TemporaryHome {
protected:
    DemoHome() {
        stopClock(now());
        requireSpace(testRoot(), roomForDemoHome);
        const std::optional<World> made = makeDemoHome(folder());
        if (!made) {
            throw std::runtime_error("the demo's home cannot be made");
        }
        setWorld(*made);
    }

    static std::filesystem::path folder() { return testRoot() / "Mac"; }

    static RuleResult scan() {
        RuleResult all;
        for (const Spec& spec : Scanner::specs()) {
            Probe probe(std::make_shared<Tracker>());
            for (Card& card : spec.run(probe)) {
                all.cards.push_back(std::move(card));
            }
            all.blocked = all.blocked || probe.blocked;
        }
        return all;
    }

    static std::vector<std::string> namesOf(const Card* card) {
        std::vector<std::string> names;
        for (const Entry& entry : card == nullptr ? std::vector<Entry>() : card->entries) {
            names.push_back(entry.name);
        }
        return names;
    }
};

TEST_F(DemoHome, HasSomethingForEveryRule) {
    for (const Spec& spec : Scanner::specs()) {
        Probe probe(std::make_shared<Tracker>());
        EXPECT_FALSE(spec.run(probe).empty()) << spec.label;
    }
}

TEST_F(DemoHome, ShowsEveryCardThereIs) {
    const RuleResult all = scan();
    ASSERT_EQ(all.cards.size(), std::size(expectedCards));
    for (std::size_t i = 0; i < all.cards.size(); ++i) {
        const Card& card = all.cards[i];
        const CardDescription& expected = expectedCards[i];
        EXPECT_EQ(card.id, expected.id);
        EXPECT_EQ(card.title, expected.title);
        EXPECT_EQ(card.symbol, expected.symbol) << card.id;
        EXPECT_EQ(card.bucket, expected.bucket) << card.id;
        EXPECT_EQ(card.confidence, expected.confidence) << card.id;
        EXPECT_EQ(card.risk, expected.risk) << card.id;
        EXPECT_EQ(card.summary, expected.summary) << card.id;
        EXPECT_EQ(card.why, expected.why) << card.id;
        EXPECT_EQ(card.selected, card.bucket == Bucket::safe) << card.id;
        EXPECT_GE(card.dormancyDays, 1.0) << card.id;
    }
    EXPECT_FALSE(all.blocked);
}

TEST_F(DemoHome, HoldsWhatIsLeftAloneToo) {
    const RuleResult all = scan();
    EXPECT_THAT(namesOf(all.card("clones")), ElementsAre("Chrome ghost clone", "Brave ghost clone"));
    EXPECT_THAT(namesOf(all.card("caches")), ElementsAre("Lumen", "Northwind", "Lagoon Music", "Fieldnotes"));
    EXPECT_EQ(namesOf(all.card("crash")).size(), 3U);
    EXPECT_EQ(all.card("snapshots")->snapshotIDs.size(), 4U);
    EXPECT_THAT(namesOf(all.card("derived")), ElementsAre("Weatherglass", "Tide-Tables"));
    EXPECT_THAT(namesOf(all.card("proj-node")), ElementsAre("weather-site", "recipe-box"));
    EXPECT_THAT(namesOf(all.card("orphans")), ElementsAre("Saltmarsh", "Paperfold Studio", "Quillpad"));
    EXPECT_THAT(namesOf(all.card("downloads")),
                ElementsAre("Paperfold Studio 3.dmg", "coast-walk-photos.zip", "Old Flat", "manual-oven.pdf"));
}

TEST_F(DemoHome, OffersNoPlaceTwice) {
    std::set<std::filesystem::path> places;
    for (const Card& card : scan().cards) {
        for (const Entry& entry : card.entries) {
            EXPECT_TRUE(places.insert(entry.url).second) << entry.url;
        }
    }
    // Nor one inside another. (Sorted, what lies in a folder comes behind it.)
    for (auto inner = places.begin(); inner != places.end(); ++inner) {
        for (auto outer = places.begin(); outer != inner; ++outer) {
            EXPECT_FALSE(inner->string().starts_with(outer->string() + "/")) << *inner;
        }
    }
}

TEST_F(DemoHome, IsOfAModestSize) {
    std::int64_t total = 0;
    for (const Card& card : scan().cards) {
        total += card.size();
    }
    EXPECT_GT(total, 150'000'000);
    EXPECT_LT(total, 300'000'000);
}

TEST_F(DemoHome, HasABackupToolThatDeletes) {
    const std::vector<std::string> before = scan().card("snapshots")->snapshotIDs;
    const std::filesystem::path tool = world().rooted("/usr/bin/tmutil");
    EXPECT_EQ(runTool(tool, {"deletelocalsnapshots", before.at(1)}).status, 0);
    EXPECT_THAT(scan().card("snapshots")->snapshotIDs, ElementsAre(before[0], before[2], before[3]));
    EXPECT_NE(runTool(tool, {"deletelocalsnapshots", before[1]}).status, 0);
    for (const std::string& stamp : {before[0], before[2], before[3]}) {
        EXPECT_EQ(runTool(tool, {"deletelocalsnapshots", stamp}).status, 0);
    }
    EXPECT_EQ(scan().card("snapshots"), nullptr);
}

TEST_F(DemoHome, IsMadeInAnEmptyPlaceAlone) {
    EXPECT_EQ(makeDemoHome(folder()), std::nullopt);
    EXPECT_EQ(makeDemoHome("relative"), std::nullopt);
    EXPECT_FALSE(itemExists("relative"));
    makeFile(testRoot() / "other/precious");
    EXPECT_EQ(makeDemoHome(testRoot() / "other"), std::nullopt);
    EXPECT_EQ(listFolder(testRoot() / "other", ListingDetail::kinds).items.size(), 1U);
}

}  // namespace
}  // namespace vesk

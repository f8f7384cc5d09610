// Projects, leftovers and downloads in a Linux home.

#include "rules/linux_rule_test.h"
#include "support/private_mounts.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class LinuxProjects : public LinuxRuleTest {
protected:
    LinuxProjects() { stopClock(now()); }
    static std::vector<std::string> found() { return linesOf(run(Scanner::projectCards).card("proj-node")); }
};

class LinuxLeftovers : public LinuxRuleTest {
protected:
    LinuxLeftovers() { stopClock(now()); }
    static std::vector<std::string> found() { return linesOf(run(Scanner::orphanCard)); }
};

class LinuxDownloads : public LinuxRuleTest {
protected:
    LinuxDownloads() { stopClock(now()); }
    static std::vector<std::string> found() { return linesOf(run(rules::oldDownloads)); }
};

TEST_F(LinuxProjects, AreNotSearchedForInTheUsersFoldersWhereverTheyLie) {
    make({"Dokumente/app/node_modules/a", "data/Bilder/app/node_modules/a", "data/app/node_modules/a",
          "Projekte/app/node_modules/a", "snap/code/node_modules/a", "Documents/app/node_modules/a",
          "code/snap/app/node_modules/a", "linked/app/node_modules/a"});
    makeLink(testHome() / "Musik", "linked");
    makeUserFolders(
        "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\nXDG_PICTURES_DIR=\"$HOME/data/Bilder/\"\n"
        "XDG_MUSIC_DIR=\"$HOME/Musik\"\nXDG_PROJECTS_DIR=\"$HOME/Projekte\"\nXDG_DESKTOP_DIR=\"$HOME/\"\n");
    makeAllOld(30);
    EXPECT_THAT(found(), UnorderedElementsAre("data/app/node_modules: app", "Projekte/app/node_modules: app",
                                              "code/snap/app/node_modules: app"));
    showMac();
    EXPECT_EQ(found().size(), 7U);
}

TEST_F(LinuxProjects, AreNotSearchedForWherePackagesAreKept) {
    setVariables({{"PNPM_HOME", testHome() / "tools/pnpm"}});
    make({"tools/pnpm/global/5/node_modules/a", "tools/app/node_modules/a"});
    makeAllOld(30);
    EXPECT_THAT(found(), ElementsAre("tools/app/node_modules: app"));
}

TEST_F(LinuxProjects, AreNotWhereProgramsAreInstalledForTheUser) {
    make({"npm-global/lib/node_modules/typescript/a", "code/lib/node_modules/a", "code/lib/package.json",
          "code/library/node_modules/a"});
    makeAllOld(30);
    EXPECT_THAT(found(), UnorderedElementsAre("code/lib/node_modules: lib", "code/library/node_modules: library"));
    showMac();
    EXPECT_EQ(found().size(), 3U);
}

TEST_F(LinuxLeftovers, AreFlatpaksThatNoInstallationHas) {
    make({".var/app/org.gone.App/data/a", ".var/app/org.user.App/data/a", ".var/app/org.system.App/data/a",
          ".var/app/org.usb.App/data/a", ".var/app/org.running.App/data/a", ".var/app/.hidden/a"});
    makeFile(testHome() / ".var/app/org.file.App");
    makeFolder(testHome() / ".local/share/flatpak/app/org.user.App/current");
    makeFolder(testRoot() / "var/lib/flatpak/app/org.system.App");
    makeFolder(testRoot() / "media/card/flatpak/app/org.usb.App");
    writeFile(testRoot() / "etc/flatpak/installations.d/card.conf",
              "[Installation \"card\"]\nPath=/media/card/flatpak\nDisplayName=Card\n");
    writeFile(testRoot() / ".flatpak/1234/info", "[Application]\nname=org.running.App\n");
    makeAllOld(61);
    EXPECT_THAT(found(), ElementsAre(".var/app/org.gone.App: org.gone.App"));
    showMac();
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxLeftovers, AreNoneWhileAnInstallationIsMissingOrRefuses) {
    make({".var/app/org.gone.App/data/a"});
    makeFolder(testRoot() / "var/lib/flatpak/app");
    makeFolder(testRoot() / "media/card/flatpak/app");
    writeFile(testRoot() / "etc/flatpak/installations.d/card.conf",
              "[Installation \"card\"]\nPath=/media/card/flatpak\n");
    makeFolder(testRoot() / ".flatpak");
    makeAllOld(61);
    EXPECT_EQ(found().size(), 1U);
    for (const char* refused : {"var/lib/flatpak/app", "media/card", "etc/flatpak/installations.d", ".flatpak"}) {
        const Refused folder(testRoot() / refused);
        EXPECT_THAT(found(), IsEmpty()) << refused;
    }
    std::filesystem::remove_all(testRoot() / "media/card");
    EXPECT_THAT(found(), IsEmpty());
    std::filesystem::remove_all(testRoot() / "etc/flatpak");
    EXPECT_EQ(found().size(), 1U);
    setVariables({{"FLATPAK_USER_DIR", testHome() / "flatpak"}});
    EXPECT_THAT(found(), IsEmpty());
    makeFolder(testHome() / "flatpak/app/org.other.App");
    EXPECT_EQ(found().size(), 1U);
    makeFolder(testHome() / "flatpak/app/org.gone.App");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxLeftovers, AreSnapsThatAreNotInstalled) {
    make({"snap/gone/common/a", "snap/gone_two/12/a", "snap/mounted/common/a", "snap/fedoras/common/a",
          "snap/file/common/a", "snap/Mine/common/a", "snap/notes/text", "snap/too_long_key/common/a"});
    makeFolder(testRoot() / "snap/mounted");
    makeFolder(testRoot() / "var/lib/snapd/snap/fedoras");
    makeFile(testRoot() / "var/lib/snapd/snaps/file_12.snap");
    makeFile(testRoot() / "var/lib/snapd/snaps/gone.txt");
    makeAllOld(61);
    EXPECT_THAT(found(), UnorderedElementsAre("snap/gone: gone", "snap/gone_two: gone_two"));
    const Refused folder(testRoot() / "var/lib/snapd/snaps");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxLeftovers, LayUntouchedForSixtyDays) {
    for (const char* name : {"org.a.Before", "org.a.At", "org.a.Inside"}) {
        make({std::string(".var/app/") + name + "/data/a"});
    }
    makeAllOld(90);
    setDates(testHome() / ".var/app/org.a.Before", secondsAgo(sixtyDays + 1));
    setDates(testHome() / ".var/app/org.a.At", secondsAgo(sixtyDays));
    setDates(testHome() / ".var/app/org.a.Inside/data/a", secondsAgo(sixtyDays));
    EXPECT_THAT(found(), ElementsAre(".var/app/org.a.Before: org.a.Before"));
    Probe probe(std::make_shared<Tracker>());
    Scanner::orphanCard(probe);
    EXPECT_EQ(probe.judgedBy.at(testHome() / ".var/app/org.a.Before").modified, secondsAgo(sixtyDays + 1));
}

// Their caches would have been offered twice, and counted twice.
TEST_F(LinuxLeftovers, TakeTheirCachesAndCrashReportsWithThem) {
    make({".var/app/org.mozilla.firefox/cache/mozilla/a",
          ".var/app/org.mozilla.firefox/.mozilla/firefox/Crash Reports/pending/a.dmp",
          "snap/firefox/common/.mozilla/firefox/Crash Reports/pending/a.dmp"});
    makeAllOld(61);
    EXPECT_EQ(found().size(), 2U);
    EXPECT_THAT(run(rules::appCaches).cards, IsEmpty());
    EXPECT_THAT(run(rules::oldCrashReports).cards, IsEmpty());
    makeFolder(testRoot() / "var/lib/flatpak/app/org.mozilla.firefox");
    makeFolder(testRoot() / "snap/firefox");
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_EQ(linesOf(run(rules::appCaches)).size(), 1U);
    EXPECT_EQ(linesOf(run(rules::oldCrashReports)).size(), 2U);
}

TEST_F(LinuxLeftovers, AreNoSettingsAndDataOfOtherPrograms) {
    make({".config/gone/a", ".local/share/gone/a", ".gone/a"});
    makeAllOld(90);
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxDownloads, LieInTheUsersOwnFolderToo) {
    make({"Downloads/a", "Загрузки/b"});
    makeUserFolders("XDG_DOWNLOAD_DIR=\"$HOME/Загрузки\"\n");
    makeAllOld(61);
    EXPECT_THAT(found(), UnorderedElementsAre("Downloads/a: a", "Загрузки/b: b"));
    showMac();
    EXPECT_THAT(found(), ElementsAre("Downloads/a: a"));
}

TEST_F(LinuxDownloads, AreNotLookedForInAFolderOfAnotherUseOrOutside) {
    make({"Desktop/a", "a"});
    makeFile(testRoot() / "disk/a");
    makeLink(testHome() / "Schreibtisch", "Desktop");
    makeAllOld(61);
    for (const char* lines :
         {"XDG_DOWNLOAD_DIR=\"$HOME/Desktop\"\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\n",
          "XDG_DOWNLOAD_DIR=\"$HOME/Schreibtisch\"\nXDG_DESKTOP_DIR=\"$HOME/Desktop\"\n",
          "XDG_DOWNLOAD_DIR=\"$HOME\"\n", "XDG_DOWNLOAD_DIR=\"$HOME/..\"\n", "XDG_DOWNLOAD_DIR=\"Desktop\"\n"}) {
        makeUserFolders(lines);
        EXPECT_THAT(found(), IsEmpty()) << lines;
    }
    makeUserFolders("XDG_DOWNLOAD_DIR=\"" + (testRoot() / "disk").string() + "\"\n");
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(LinuxDownloads, AreNotTheFoldersThatOthersUse) {
    make({"Downloads/new/a", "Downloads/models/b", "Downloads/src/app/c", "Downloads/plain/d"});
    makeUserFolders("XDG_DOWNLOAD_DIR=\"$HOME/Downloads/new\"\nXDG_PROJECTS_DIR=\"$HOME/Downloads/src/app\"\n");
    setVariables({{"OLLAMA_MODELS", testHome() / "Downloads/models"}});
    makeAllOld(61);
    EXPECT_THAT(found(), UnorderedElementsAre("Downloads/plain: plain", "Downloads/new/a: a"));
}

// Whether they were opened since, nothing tells there.
TEST_F(LinuxDownloads, AreNotJudgedWhereNoUseIsNoted) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    makeFolder(testHome() / "Downloads");
    for (const bool ofFilesEither : {false, true}) {
        ASSERT_TRUE(mountWithoutUseDates(testHome() / "Downloads", ofFilesEither));
        make({"Downloads/file", "Downloads/folder/file"});
        makeAllOld(61);
        EXPECT_THAT(found(),
                    ::testing::ElementsAreArray(ofFilesEither ? std::vector<std::string>()
                                                              : std::vector<std::string>{"Downloads/file: file"}));
        showMac();
        EXPECT_EQ(found().size(), 2U);
        showLinux();
        unmount(testHome() / "Downloads");
    }
}

}  // namespace
}  // namespace vesk

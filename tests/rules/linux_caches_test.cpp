// Caches and crash reports in a Linux home.

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "rules/linux_rule_test.h"
#include "support/private_mounts.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;
using ::testing::UnorderedElementsAreArray;

using LinuxCaches = LinuxRuleTest;
using LinuxCrashReports = LinuxRuleTest;

TEST_F(LinuxCaches, AreOnlyThoseKnownToBeMadeAgain) {
    std::vector<std::string> expected;
    for (const char* name : {"mozilla", "google-chrome", "google-chrome-beta", "chromium", "thumbnails", "go-build",
                             "yarn", "ccache", "pre-commit"}) {
        make({std::string(".cache/") + name + "/deep/file"});
        expected.push_back(std::string(".cache/") + name + ": " + name);
    }
    for (const char* name : {"Homebrew",
                             "pip",
                             "pnpm",
                             "huggingface",
                             "torch",
                             "lm-studio",
                             "kcrash-metadata",
                             "drkonqi",
                             "obexd",
                             "simple-scan",
                             "rclone",
                             "onedriver",
                             "evolution",
                             "JetBrains",
                             "Google",
                             "RawTherapee",
                             "cliphist",
                             "sessions",
                             "keepassxc",
                             "pypoetry",
                             "uv",
                             "ms-playwright",
                             "kdenlive",
                             "ibus",
                             "git",
                             "doc",
                             "dconf",
                             "gvfs",
                             "keyring-A1",
                             "kwin",
                             "plasmashell",
                             "mesa_shader_cache",
                             "wallpaper",
                             "fontconfig",
                             "gstreamer-1.0",
                             "tracker3",
                             "gnome-software",
                             "somebody's",
                             ".mozilla",
                             "Mozilla",
                             "mozilla2",
                             "old-google-chrome"}) {
        make({std::string(".cache/") + name + "/file"});
    }
    makeFile(testHome() / ".cache/a file");
    EXPECT_THAT(linesOf(run(rules::appCaches)), UnorderedElementsAreArray(expected));
}

TEST_F(LinuxCaches, OfFlatpaksAreThoseToo) {
    make({".var/app/org.mozilla.firefox/cache/mozilla/file", ".var/app/org.mozilla.firefox/cache/tmp/unsaved",
          ".var/app/org.mozilla.firefox/cache/fontconfig/file", ".var/app/com.google.Chrome/cache/google-chrome/file",
          ".var/app/com.google.Chrome/data/mozilla/file"});
    EXPECT_THAT(linesOf(run(rules::appCaches)),
                UnorderedElementsAre(".var/app/org.mozilla.firefox/cache/mozilla: org.mozilla.firefox",
                                     ".var/app/com.google.Chrome/cache/google-chrome: com.google.Chrome"));
}

TEST_F(LinuxCaches, OfElectronAreTheFoldersBesideItsLocalStorage) {
    make({".config/Notes/Local Storage/leveldb/1", ".config/Notes/Cache/1", ".config/Notes/Code Cache/js/1",
          ".config/Notes/GPUCache/1", ".config/Notes/DawnGraphiteCache/1", ".config/Notes/DawnWebGPUCache/1",
          ".config/Notes/CachedData/1", ".config/Notes/CachedExtensionVSIXs/1", ".config/Notes/User/History/1",
          ".config/Notes/Backups/1", ".config/Notes/Workspaces/1", ".config/Notes/Service Worker/1",
          ".config/Notes/IndexedDB/1", ".config/Other/Cache/1", ".config/Other/GPUCache/1"});
    EXPECT_THAT(linesOf(run(rules::appCaches)),
                UnorderedElementsAre(".config/Notes/Cache: Notes", ".config/Notes/Code Cache: Notes",
                                     ".config/Notes/GPUCache: Notes", ".config/Notes/DawnGraphiteCache: Notes",
                                     ".config/Notes/DawnWebGPUCache: Notes", ".config/Notes/CachedData: Notes",
                                     ".config/Notes/CachedExtensionVSIXs: Notes"));
}

TEST_F(LinuxCaches, OfSnapsStay) {
    make({"snap/firefox/common/.cache/mozilla/file"});
    EXPECT_THAT(run(rules::appCaches).cards, IsEmpty());
}

TEST_F(LinuxCaches, CarryTheNameInTheApplicationsDesktopFile) {
    make({".cache/chromium/file", ".cache/google-chrome/file", ".cache/mozilla/file",
          ".var/app/org.mozilla.firefox/cache/mozilla/file", ".config/Notes/Local Storage/1", ".config/Notes/Cache/1"});
    writeFile(testRoot() / "usr/share/applications/chromium.desktop",
              "# comment\n[Desktop Action new]\nName=New\n[Desktop Entry]\nName[de]=Netz\nName = Chromium Browser\n");
    writeFile(testHome() / ".local/share/applications/google-chrome.desktop", "[Desktop Entry]\nName=\n");
    writeFile(testRoot() / "var/lib/flatpak/exports/share/applications/org.mozilla.firefox.desktop",
              "[Desktop Entry]\nName=Firefox\n");
    writeFile(testHome() / ".local/share/applications/Notes.desktop", "[Desktop Entry]\nName=My\xFFNotes\n");
    EXPECT_THAT(linesOf(run(rules::appCaches)),
                UnorderedElementsAre(".cache/chromium: Chromium Browser", ".cache/google-chrome: google-chrome",
                                     ".cache/mozilla: mozilla", ".var/app/org.mozilla.firefox/cache/mozilla: Firefox",
                                     ".config/Notes/Cache: My\xEF\xBF\xBDNotes"));
}

TEST_F(LinuxCaches, AreNoLinksNoFilesAndNothingAtWork) {
    makeFile(testRoot() / "elsewhere/file");
    makeLink(testHome() / ".cache/mozilla", testRoot() / "elsewhere");
    makeFile(testHome() / ".cache/yarn");
    make({".cache/ccache/deep/er/file", ".cache/chromium/file", ".cache/go-build/file"});
    ASSERT_EQ(mkfifo((testHome() / ".cache/ccache/deep/er/pipe").c_str(), 0600), 0);
    const int listening = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string place = testHome() / ".cache/chromium/socket";
    if (place.size() < sizeof address.sun_path) {
        std::memcpy(address.sun_path, place.c_str(), place.size() + 1);
        ASSERT_EQ(bind(listening, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    } else {
        std::filesystem::remove_all(testHome() / ".cache/chromium");
    }
    EXPECT_THAT(linesOf(run(rules::appCaches)), ElementsAre(".cache/go-build: go-build"));
    close(listening);
}

TEST_F(LinuxCaches, WithAMountInsideStay) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    make({".cache/mozilla/file", ".cache/yarn/file"});
    makeFolder(testHome() / ".cache/mozilla/deep/disk");
    ASSERT_TRUE(mountTemporaryFileSystem(testHome() / ".cache/mozilla/deep/disk"));
    EXPECT_THAT(linesOf(run(rules::appCaches)), ElementsAre(".cache/yarn: yarn"));
    unmount(testHome() / ".cache/mozilla/deep/disk");
}

TEST_F(LinuxCaches, SayWhenAFolderOrAPartOfOneMayNotBeRead) {
    make({".cache/mozilla/inside/file", ".cache/yarn/file", ".config/Notes/Local Storage/1", ".config/Notes/Cache/1"});
    for (const char* denied : {".cache", ".cache/mozilla/inside", ".config"}) {
        const Denied folder(testHome() / denied);
        EXPECT_TRUE(run(rules::appCaches).blocked) << denied;
    }
    EXPECT_FALSE(run(rules::appCaches).blocked);
}

TEST_F(LinuxCaches, AreLookedForWhereTheVariableSaysAndInTheUsualPlace) {
    World wanted = linuxWorld();
    wanted.cacheHome = testHome() / "fast/cache";
    setWorld(wanted);
    make({"fast/cache/mozilla/file", ".cache/yarn/file"});
    EXPECT_THAT(linesOf(run(rules::appCaches)),
                UnorderedElementsAre("fast/cache/mozilla: mozilla", ".cache/yarn: yarn"));
    for (const std::filesystem::path& place : {testRoot() / "outside", testHome(), testHome().parent_path()}) {
        wanted.cacheHome = place;
        setWorld(wanted);
        makeFile(place / "mozilla/file");
        EXPECT_THAT(linesOf(run(rules::appCaches)), ElementsAre(".cache/yarn: yarn")) << place;
    }
    std::filesystem::create_directory_symlink(testHome() / ".cache", testHome() / "link");
    wanted.cacheHome = testHome() / "link";
    setWorld(wanted);
    EXPECT_THAT(linesOf(run(rules::appCaches)), ElementsAre("link/yarn: yarn"));
}

TEST_F(LinuxCaches, OfAMacsHomeStayTheMacs) {
    make({".cache/mozilla/file", ".config/Notes/Local Storage/1", ".config/Notes/Cache/1", "Library/Caches/app/file"});
    EXPECT_EQ(linesOf(run(rules::appCaches)).size(), 3U);
    showMac();
    EXPECT_THAT(linesOf(run(rules::appCaches)), ElementsAre("Library/Caches/app: app"));
}

TEST_F(LinuxCrashReports, AreTheFilesThatTellOfCrashes) {
    stopClock(now());
    std::vector<std::string> expected;
    const auto makeReports = [&](const std::string& folder, const std::vector<std::pair<const char*, bool>>& files) {
        for (const auto& [name, offered] : files) {
            makeFile(testHome() / folder / name);
            if (offered) {
                expected.push_back((std::filesystem::path(folder) / name).string() + ": Crash report");
            }
        }
    };
    for (const char* firefox : {".mozilla/firefox", ".config/mozilla/firefox", "snap/firefox/common/.mozilla/firefox",
                                ".var/app/org.mozilla.firefox/.mozilla/firefox"}) {
        makeReports(std::string(firefox) + "/Crash Reports", {{"pending/a.dmp", true},
                                                              {"pending/a.extra", true},
                                                              {"pending/a.memory.json.gz", true},
                                                              {"pending/a.json.gz", false},
                                                              {"pending/submit.log", false},
                                                              {"pending/EndOfLife1", false},
                                                              {"pending/.dmp", false},
                                                              {"submitted/bp-1.txt", true},
                                                              {"submitted/1.txt", false},
                                                              {"InstallTime2026.txt", false}});
    }
    for (const char* chrome : {"google-chrome", "google-chrome-beta", "google-chrome-unstable", "chromium"}) {
        makeReports(std::string(".config/") + chrome + "/Crash Reports", {{"settings.dat", false},
                                                                          {"new/a.dmp", true},
                                                                          {"pending/a.meta", true},
                                                                          {"completed/a.dmp", true},
                                                                          {"pending/a.lock", false},
                                                                          {"attachments/1/a.dmp", false},
                                                                          {"other/a.dmp", false}});
    }
    makeReports(".config/Notes/Crashpad",
                {{"settings.dat", false}, {"completed/a.dmp", true}, {"pending/a.lock", false}});
    makeReports(".config/NoSettings/Crashpad", {{"completed/a.dmp", false}});
    makeReports(".config/brave/Crash Reports", {{"settings.dat", false}, {"completed/a.dmp", false}});
    makeReports(".cache/kcrash-metadata", {{"app.1.ini", true}, {"app.1.txt", false}});
    makeReports(".cache/drkonqi/cores", {{"a.ini", false}});
    makeAllOld(8);
    EXPECT_THAT(linesOf(run(rules::oldCrashReports)), UnorderedElementsAreArray(expected));
}

TEST_F(LinuxCrashReports, AreOlderThanAWeekAndNoFolders) {
    stopClock(now());
    const std::filesystem::path reports = testHome() / ".cache/kcrash-metadata";
    for (const auto& [name, age] :
         {std::pair("before.ini", 604'801.0), {"at.ini", 604'800.0}, {"after.ini", 604'799.0}}) {
        makeFile(reports / name);
        setDates(reports / name, secondsAgo(age), secondsAgo(0));
    }
    makeFile(reports / "folder.ini/file");
    setDates(reports / "folder.ini", daysAgo(30));
    EXPECT_THAT(linesOf(run(rules::oldCrashReports)), ElementsAre(".cache/kcrash-metadata/before.ini: Crash report"));
    Probe probe(std::make_shared<Tracker>());
    rules::oldCrashReports(probe);
    EXPECT_EQ(probe.judgedBy.at(reports / "before.ini").modified, secondsAgo(604'801));
    const Denied folder(reports);
    EXPECT_TRUE(run(rules::oldCrashReports).blocked);
}

TEST_F(LinuxCrashReports, OfChromeLieWhereItsVariableSaysToo) {
    stopClock(now());
    setVariables({{"CHROME_CONFIG_HOME", testHome() / "chrome"}});
    make({"chrome/chromium/Crash Reports/settings.dat", "chrome/chromium/Crash Reports/new/a.dmp"});
    makeAllOld(8);
    EXPECT_THAT(linesOf(run(rules::oldCrashReports)),
                ElementsAre("chrome/chromium/Crash Reports/new/a.dmp: Crash report"));
}

}  // namespace
}  // namespace vesk

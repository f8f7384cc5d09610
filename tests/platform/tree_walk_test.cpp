// What a walk counts and skips, and that it leaves no trace.

#include "platform/files/tree_walk.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "platform/files/files.h"
#include "platform/tree_walk_fixture.h"
#include "support/file_names.h"
#include "support/private_mounts.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

TEST_F(TreeWalkTest, AddsUpTheRegularFilesAtAllDepths) {
    makeFile(top / "a", 5'000);
    makeFile(top / ".hidden/b", 100'000);
    makeFile(top / "x/y/Some.app/Contents/c", 1);
    makeFolder(top / "empty");
    const std::int64_t expected =
        allocated(top / "a") + allocated(top / ".hidden/b") + allocated(top / "x/y/Some.app/Contents/c");
    EXPECT_EQ(measure(top).size, expected);
    EXPECT_EQ(tracker->counts(), (Tracker::Counts{expected, 3}));
    EXPECT_FALSE(probe.blocked);
}

TEST_F(TreeWalkTest, AnEmptyFolderMeasuresNothing) {
    EXPECT_EQ(measure(top), Probe::Measurement{});
    EXPECT_EQ(tracker->updates(), 1);
    const std::optional<Entry> entry = probe.entry(top, "Empty");
    ASSERT_TRUE(entry);
    EXPECT_EQ(entry->size, 0);
    EXPECT_EQ(entry->lastUsed, std::nullopt);
    EXPECT_EQ(entry->name, "Empty");
    EXPECT_EQ(entry->url, top);
}

TEST_F(TreeWalkTest, AMissingItemLeavesTheTrackerAlone) {
    EXPECT_EQ(measure(testHome() / "missing"), Probe::Measurement{});
    EXPECT_EQ(probe.entry(testHome() / "missing", "Missing"), std::nullopt);
    makeLink(testHome() / "dangling", "nowhere");
    EXPECT_EQ(measure(testHome() / "dangling"), Probe::Measurement{});
    EXPECT_EQ(probe.entry(testHome() / "dangling", "Dangling"), std::nullopt);
    EXPECT_EQ(tracker->updates(), 0);
    EXPECT_FALSE(probe.blocked);
}

TEST_F(TreeWalkTest, SixHundredFilesAreThreeUpdates) {
    const int folder = open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < 600; ++i) {
        touch(folder, std::to_string(i));
    }
    close(folder);
    measure(top);
    EXPECT_EQ(tracker->updates(), 3);
    EXPECT_EQ(tracker->counts().files, 600);
}

TEST_F(TreeWalkTest, UpdatesAreFewForAnyTree) {
    for (const int count : {0, 1, 255, 256, 257, 511, 512, 513, 3000}) {
        const fs::path tree = top / std::to_string(count);
        makeFolder(tree);
        for (int i = 0; i < count; ++i) {
            const fs::path folder = tree / std::to_string(i % 37) / std::to_string(i % 5);
            makeFolder(folder);
            const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            touch(opened, std::to_string(i));
            close(opened);
        }
        const auto fresh = std::make_shared<Tracker>();
        Probe(fresh).measure(tree);
        EXPECT_EQ(fresh->counts().files, count);
        EXPECT_LE(fresh->updates(), count / 256 + 1) << count;
    }
}

TEST_F(TreeWalkTest, TheNewestUseIsTheLatestAccess) {
    makeFile(top / "a", 1);
    makeFile(top / "b/c", 1);
    const Date newest = daysAgo(4);
    setDates(top / "a", daysAgo(1), daysAgo(9));
    setDates(top / "b/c", daysAgo(30), newest);
    setDates(top / "b", daysAgo(2));  // a folder's own dates do not count
    EXPECT_EQ(measure(top).newest, newest);
}

TEST_F(TreeWalkTest, TheNewestUseIsTheLatestWhicheverThreadMeetsIt) {
    std::vector<fs::path> files;
    for (int folder = 0; folder < 60; ++folder) {
        for (int file = 0; file < 3; ++file) {
            files.push_back(top / std::to_string(folder) / std::to_string(file));
            makeFile(files.back(), 1);
        }
    }
    const Date newest = daysAgo(4);
    for (std::size_t place = 0; place < files.size(); place += 7) {
        for (std::size_t i = 0; i < files.size(); ++i) {
            // Changed in the opposite order of the uses: only uses count.
            const double age = 10 + static_cast<double>(i % 13);
            setDates(files[i], daysAgo(30 - age), i == place ? newest : daysAgo(age));
        }
        EXPECT_EQ(measure(top).newest, newest) << place;
    }
}

TEST_F(TreeWalkTest, LinksOnTheWayAreNotFollowed) {
    makeFile(testHome() / "outside/file", 50'000);
    makeFile(top / "file", 5'000);
    makeLink(top / "to file", testHome() / "outside/file");
    makeLink(top / "to folder", testHome() / "outside");
    makeLink(top / "to ancestor", "..");
    makeLink(top / "to itself", ".");
    makeLink(top / "dangling", "nowhere");
    EXPECT_EQ(measure(top).size, allocated(top / "file"));
    EXPECT_EQ(tracker->counts().files, 1);
}

TEST_F(TreeWalkTest, ALinkThatIsMeasuredItselfIsFollowedToAFolderOnly) {
    makeFile(top / "file", 5'000);
    makeLink(testHome() / "to folder", "top");
    makeLink(testHome() / "to file", "top/file");
    EXPECT_EQ(measure(testHome() / "to folder").size, allocated(top / "file"));
    EXPECT_EQ(measure(testHome() / "to file"), Probe::Measurement{});
    EXPECT_EQ(tracker->counts().files, 1);
}

TEST_F(TreeWalkTest, PipesAndSocketsCountForNothing) {
    makeFile(top / "file", 5'000);
    ASSERT_EQ(mkfifo((top / "pipe").c_str(), 0600), 0);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (top / "socket").string().copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(measure(top).size, allocated(top / "file"));
    EXPECT_EQ(tracker->counts().files, 1);
    EXPECT_EQ(measure(top / "pipe"), Probe::Measurement{});
    EXPECT_EQ(measure(top / "socket"), Probe::Measurement{});
    close(server);
}

TEST_F(TreeWalkTest, EachNameOfAHardLinkedFileCounts) {
    makeFile(top / "one", 5'000);
    fs::create_hard_link(top / "one", top / "two");
    makeFolder(top / "x");
    fs::create_hard_link(top / "one", top / "x/three");
    EXPECT_EQ(measure(top).size, 3 * allocated(top / "one"));
    EXPECT_EQ(tracker->counts().files, 3);
}

TEST_F(TreeWalkTest, SparseFilesCountWhatTheyTakeOnDisk) {
    makeFile(top / "disk.img", 4'096);
    fs::resize_file(top / "disk.img", 8'000'000'000);
    EXPECT_EQ(measure(top).size, allocated(top / "disk.img"));
    EXPECT_LT(measure(top).size, 1'000'000);
}

TEST_F(TreeWalkTest, NamesAreBytes) {
    VESK_NEEDS_NAMES("\xFF\xFE\x80");
    const std::string longest(255, 'n');
    makeFile(top / longest / longest, 5'000);
    makeFile(top / "\xFF\xFE\x80/\xC3\x28", 5'000);
    makeFile(top / "new\nline/ \"quotes\"", 5'000);
    EXPECT_EQ(tracker->counts().files, 0);
    EXPECT_EQ(measure(top).size, 3 * allocated(top / longest / longest));
    EXPECT_EQ(tracker->counts().files, 3);
}

// A hundred thousand, or VESK_FOLDER_FILES.
TEST_F(TreeWalkTest, AFolderOfVeryManyFiles) {
    const char* wanted = std::getenv("VESK_FOLDER_FILES");  // NOLINT(concurrency-mt-unsafe): no other thread yet
    const int count = wanted == nullptr ? 100'000 : std::atoi(wanted);  // NOLINT(cert-err34-c): a test's own setting
    const int folder = open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int i = 0; i < count; ++i) {
        touch(folder, "f" + std::to_string(i));
    }
    close(folder);
    makeFile(top / "large", 12'345);
    EXPECT_EQ(measure(top).size, allocated(top / "large"));
    EXPECT_EQ(tracker->counts().files, count + 1);
    EXPECT_EQ(tracker->updates(), (count + 1) / 256 + 1);
    std::printf("names: %d in one folder\n", count);
}

TEST_F(TreeWalkTest, DeniedFoldersAreReportedAndSkipped) {
    const struct {
        const char* what;
        fs::perms left;
    } cases[] = {
        {"nothing allowed", fs::perms::none},
        {"no reading", fs::perms::owner_exec | fs::perms::owner_write},
        {"no searching", fs::perms::owner_read | fs::perms::owner_write},
    };
    for (const auto& c : cases) {
        const fs::path tree = top / c.what;
        makeFile(tree / "open/file", 5'000);
        makeFile(tree / "denied/file", 5'000);
        makeFile(tree / "denied/inner/file", 5'000);
        fs::permissions(tree / "denied", c.left);
        Probe denied(tracker);
        EXPECT_EQ(denied.measure(tree).size, allocated(tree / "open/file")) << c.what;
        EXPECT_TRUE(denied.blocked) << c.what;
    }
}

TEST_F(TreeWalkTest, ADeniedTopIsReported) {
    makeFile(top / "file", 5'000);
    fs::permissions(top, fs::perms::none);
    EXPECT_EQ(measure(top), Probe::Measurement{});
    EXPECT_TRUE(probe.blocked);
    fs::permissions(top, fs::perms::owner_all);
    EXPECT_GT(measure(top).size, 0);
    EXPECT_TRUE(probe.blocked);  // never reset
}

TEST_F(TreeWalkTest, AnItemInADeniedFolderIsNotThere) {
    makeFile(top / "file", 5'000);
    fs::permissions(top, fs::perms::none);
    EXPECT_EQ(measure(top / "file"), Probe::Measurement{});
    EXPECT_FALSE(probe.blocked);
    EXPECT_EQ(tracker->updates(), 0);
}

// Every item's times, by path.
std::map<fs::path, std::pair<std::optional<Date>, std::optional<Date>>> times(const fs::path& folder) {
    std::map<fs::path, std::pair<std::optional<Date>, std::optional<Date>>> result;
    const auto note = [&](const fs::path& path) {
        const auto values = resourceValues(path);
        result[path] = {values->contentAccessDate, values->contentModificationDate};
    };
    note(folder);
    for (const FolderItem& item : listFolder(folder, ListingDetail::kinds).items) {
        if (item.isDirectory) {
            result.merge(times(folder / item.name));
        } else {
            note(folder / item.name);
        }
    }
    return result;
}

TEST_F(TreeWalkTest, LeavesNoTrace) {
    makeFile(top / "a/b/c", 5'000);
    makeFile(top / "a/d", 5'000);
    makeLink(top / "a/link", "b");
    // Read long ago and changed since, so that an ordinary read would set the access time.
    for (const char* path : {"a/b/c", "a/d", "a/link", "a/b", "a", ""}) {
        setDates(top / path, daysAgo(1), daysAgo(10));
    }
    const auto before = times(top);
    const Probe::Measurement first = measure(top);
    EXPECT_EQ(times(top), before);
    EXPECT_EQ(measure(top), first);
    EXPECT_EQ(measure(testHome()).size, first.size);
}

TEST_F(TreeWalkTest, OtherFileSystemsAreNotEntered) {
    makeFolder(top / "mounted");
    makeFolder(top / "shown again");
    makeFile(top / "file", 5'000);
    makeFile(testHome() / "elsewhere/file", 5'000);
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "no mount namespaces here";
    }
    ASSERT_TRUE(mountTemporaryFileSystem(top / "mounted"));
    ASSERT_TRUE(mountFolderAgain(testHome() / "elsewhere", top / "shown again"));
    makeFile(top / "mounted/inner/file", 5'000);
    EXPECT_EQ(measure(top).size, allocated(top / "file"));
    EXPECT_EQ(tracker->counts().files, 1);
    EXPECT_FALSE(probe.blocked);
    // Nor is a mount point itself measured, unless a link leads to it.
    EXPECT_EQ(measure(top / "mounted"), Probe::Measurement{});
    EXPECT_EQ(measure(top / "shown again"), Probe::Measurement{});
    EXPECT_EQ(measure(top / "mounted/inner").size, allocated(top / "mounted/inner/file"));
    makeLink(top / "link", "mounted");
    EXPECT_EQ(measure(top / "link").size, allocated(top / "mounted/inner/file"));
    unmount(top / "mounted");
    unmount(top / "shown again");
}

TEST_F(TreeWalkTest, ErrorsAreReportedAndTheRestIsVisited) {
    makeFile(top / "good/file", 1);
    makeFile(top / "bad/file", 1);
    fs::permissions(top / "bad", fs::perms::none);
    std::atomic<int> files = 0;
    std::vector<std::int64_t> codes;
    const bool opened = walkTree(
        top, [&]() -> FileVisitor { return [&](const ResourceValues&) { ++files; }; },
        [&](const PlatformError& error) { codes.push_back(error.code); });
    EXPECT_TRUE(opened);
    EXPECT_EQ(files, 1);
    EXPECT_THAT(codes, ::testing::ElementsAre(EACCES));
    EXPECT_FALSE(walkTree(
        top / "missing", [&]() -> FileVisitor { return {}; },
        [&](const PlatformError& error) { codes.push_back(error.code); }));
    EXPECT_EQ(codes.back(), ENOENT);
}

}  // namespace
}  // namespace vesk

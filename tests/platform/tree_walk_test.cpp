#include "platform/tree_walk.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <map>
#include <thread>

#include "core/probe.h"
#include "platform/files.h"
#include "support/private_mounts.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using testing::allocated;
using testing::daysAgo;
using testing::makeFile;
using testing::makeFolder;
using testing::makeLink;
using testing::setDates;
using testing::testHome;

// Walks are tested through Probe::measure, which is how Vesk walks.
class TreeWalkTest : public testing::TemporaryHome {
protected:
    TreeWalkTest() { makeFolder(top); }

    Probe::Measurement measure(const fs::path& path) { return probe.measure(path); }

    // Makes an empty file in an open folder: quick, for large numbers of them.
    static void touch(int folder, const std::string& name) {
        const int file = openat(folder, name.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        ASSERT_GE(file, 0) << name;
        close(file);
    }

    // Runs `work` with at most so many descriptors.
    template <typename Work>
    static void withDescriptors(rlim_t count, Work work) {
        rlimit before{};
        getrlimit(RLIMIT_NOFILE, &before);
        const rlimit fewer{count, before.rlim_max};
        ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &fewer), 0);
        work();
        setrlimit(RLIMIT_NOFILE, &before);
    }

    const fs::path top = testHome() / "top";
    std::shared_ptr<Tracker> tracker = std::make_shared<Tracker>();
    Probe probe{tracker};
};

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
    const int server = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
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

// A chain of nested folders far deeper than a path can name.
class DeepTreeTest : public TreeWalkTest {
protected:
    static constexpr int levels = 2'000;

    // At each level a sibling before and one after the way down (as most file systems list them), each with a file.
    void makeChain() const {
        int folder = open(top.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        for (int level = 0; level < levels; ++level) {
            for (const char* sibling : {"aa", "zz"}) {
                ASSERT_EQ(mkdirat(folder, sibling, 0700), 0);
                const int opened = openat(folder, sibling, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
                touch(opened, "file");
                close(opened);
            }
            ASSERT_EQ(mkdirat(folder, "level", 0700), 0);
            const int next = openat(folder, "level", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
            close(folder);
            folder = next;
        }
        close(folder);
    }

    // Takes the chain apart from above: what lies two levels down is moved up until nothing is left.
    void removeChain() const {
        const fs::path spare = testHome() / "spare";
        for (int level = 0; level < levels; ++level) {
            ASSERT_EQ(rename((top / "level").c_str(), spare.c_str()), 0);
            fs::remove_all(top);
            ASSERT_EQ(rename(spare.c_str(), top.c_str()), 0);
        }
    }
};

TEST_F(DeepTreeTest, IsMeasuredWhollyWithFewDescriptors) {
    makeChain();
    for (const rlim_t descriptors : {rlim_t{64}, rlim_t{256}, rlim_t{4096}}) {
        withDescriptors(descriptors, [&] {
            const auto fresh = std::make_shared<Tracker>();
            Probe deep(fresh);
            deep.measure(top);
            EXPECT_EQ(fresh->counts().files, 2 * levels) << descriptors;
            EXPECT_FALSE(deep.blocked);
        });
    }
    removeChain();
}

TEST_F(DeepTreeTest, IsMeasuredByManyAtOnceWithFewDescriptors) {
    makeChain();
    withDescriptors(256, [&] {
        std::vector<std::thread> threads;
        for (int i = 0; i < 13; ++i) {
            threads.emplace_back([&] { Probe(tracker).measure(top); });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(tracker->counts().files, 13 * 2 * levels);
    });
    removeChain();
}

TEST_F(TreeWalkTest, ManySubfoldersWithFewDescriptors) {
    for (int i = 0; i < 3'000; ++i) {
        makeFolder(top / std::to_string(i % 30) / std::to_string(i) / "x");
        const int folder =
            open((top / std::to_string(i % 30) / std::to_string(i)).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        touch(folder, "file");
        close(folder);
    }
    withDescriptors(48, [&] { measure(top); });
    EXPECT_EQ(tracker->counts().files, 3'000);
}

TEST_F(TreeWalkTest, FoldersMayVanishOrTurnIntoFilesMeanwhile) {
    for (int i = 0; i < 200; ++i) {
        makeFolder(top / "stays" / std::to_string(i) / "inner");
        const int folder = open((top / "stays" / std::to_string(i)).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        touch(folder, "file");
        close(folder);
    }
    std::atomic<bool> stop = false;
    std::thread changer([&] {
        std::error_code ignored;
        for (int i = 0; !stop; ++i) {
            const fs::path place = top / ("changes" + std::to_string(i % 8));
            fs::create_directories(place / "a/b/c", ignored);
            fs::rename(place / "a", place / "moved", ignored);
            fs::remove_all(place, ignored);
            const int file = open(place.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
            close(file);
            fs::remove(place, ignored);
        }
    });
    for (int round = 0; round < 100; ++round) {
        const auto fresh = std::make_shared<Tracker>();
        Probe racing(fresh);
        racing.measure(top / "stays");
        EXPECT_EQ(fresh->counts().files, 200);
        racing.measure(top);
        EXPECT_GE(fresh->counts().files, 400);
        EXPECT_LE(fresh->counts().files, 408);
        EXPECT_FALSE(racing.blocked);
    }
    stop = true;
    changer.join();
}

TEST_F(TreeWalkTest, RefusedFoldersAreToldAndPassedOver) {
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
        makeFile(tree / "refused/file", 5'000);
        makeFile(tree / "refused/inner/file", 5'000);
        fs::permissions(tree / "refused", c.left);
        Probe refused(tracker);
        EXPECT_EQ(refused.measure(tree).size, allocated(tree / "open/file")) << c.what;
        EXPECT_TRUE(refused.blocked) << c.what;
    }
}

TEST_F(TreeWalkTest, ARefusedTopIsTold) {
    makeFile(top / "file", 5'000);
    fs::permissions(top, fs::perms::none);
    EXPECT_EQ(measure(top), Probe::Measurement{});
    EXPECT_TRUE(probe.blocked);
    fs::permissions(top, fs::perms::owner_all);
    EXPECT_GT(measure(top).size, 0);
    EXPECT_TRUE(probe.blocked);  // never taken back
}

TEST_F(TreeWalkTest, AnItemInARefusedFolderIsNotThere) {
    makeFile(top / "file", 5'000);
    fs::permissions(top, fs::perms::none);
    EXPECT_EQ(measure(top / "file"), Probe::Measurement{});
    EXPECT_FALSE(probe.blocked);
    EXPECT_EQ(tracker->updates(), 0);
}

TEST_F(TreeWalkTest, ARefusalDeepDownDoesNotStopTheWalkWithFewDescriptors) {
    fs::path folder = top;
    std::int64_t expected = 0;
    for (int level = 0; level < 60; ++level) {
        makeFile(folder / "refused/file", 5'000);
        makeFile(folder / "zz/file", 5'000);
        expected += allocated(folder / "zz/file");
        fs::permissions(folder / "refused", fs::perms::none);
        folder /= "level";
    }
    withDescriptors(32, [&] { EXPECT_EQ(measure(top).size, expected); });
    EXPECT_TRUE(probe.blocked);
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
    // Read long ago and changed since: a plain reading would set the access time.
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
    if (!testing::enterPrivateMounts()) {
        GTEST_SKIP() << "no mount namespaces here";
    }
    ASSERT_TRUE(testing::mountTemporaryFileSystem(top / "mounted"));
    ASSERT_TRUE(testing::mountFolderAgain(testHome() / "elsewhere", top / "shown again"));
    makeFile(top / "mounted/inner/file", 5'000);
    EXPECT_EQ(measure(top).size, allocated(top / "file"));
    EXPECT_EQ(tracker->counts().files, 1);
    EXPECT_FALSE(probe.blocked);
    // Measured itself, a folder on another file system counts.
    EXPECT_EQ(measure(top / "mounted").size, allocated(top / "mounted/inner/file"));
    testing::unmount(top / "mounted");
    testing::unmount(top / "shown again");
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

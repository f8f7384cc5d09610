// Walks at the limits of the system: trees deeper than the longest path, few descriptors, folders that change
// meanwhile.

#include <sys/resource.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>
#include <vector>

#include "platform/tree_walk_fixture.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

// Runs `work` with a limited number of descriptors.
template <typename Work>
void withDescriptors(rlim_t count, Work work) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit fewer{count, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &fewer), 0);
    work();
    setrlimit(RLIMIT_NOFILE, &before);
}

// A chain of nested folders, far deeper than the longest path.
class DeepTreeTest : public TreeWalkTest {
protected:
    static constexpr int levels = 2'000;

    // Each level has a sibling before and one after the next level (in most file systems' order), each with a file.
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

    // Removes the chain from the top: moves up what is two levels down until nothing is left.
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

TEST_F(TreeWalkTest, ADeniedFolderDeepDownDoesNotStopTheWalkWithFewDescriptors) {
    fs::path folder = top;
    std::int64_t expected = 0;
    for (int level = 0; level < 60; ++level) {
        makeFile(folder / "denied/file", 5'000);
        makeFile(folder / "zz/file", 5'000);
        expected += allocated(folder / "zz/file");
        fs::permissions(folder / "denied", fs::perms::none);
        folder /= "level";
    }
    withDescriptors(32, [&] { EXPECT_EQ(measure(top).size, expected); });
    EXPECT_TRUE(probe.blocked);
}

}  // namespace
}  // namespace vesk

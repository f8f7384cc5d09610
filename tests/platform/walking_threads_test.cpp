// The threads of one walk while they wait for the disk.

#include <gmock/gmock.h>
#include <sys/resource.h>
#ifdef __linux__
#include <sys/syscall.h>
#endif
#include <unistd.h>

#include <array>
#include <chrono>
#include <map>
#include <mutex>
#include <set>
#include <thread>
#include <utility>

#include "platform/files/descriptor.h"
#include "platform/files/tree_walk.h"
#include "platform/threads/background.h"
#include "platform/threads/thread_pool.h"
#include "platform/tree_walk_fixture.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::Pair;

// Walks with visitors that wait as if for a disk, so that many threads take part.
class WalkingThreads : public TreeWalkTest {
protected:
    static constexpr int folders = 600;

    void makeFolders() {
        for (int i = 0; i < folders; ++i) {
            const std::filesystem::path inner = top / std::to_string(i % 20) / std::to_string(i);
            makeFile(inner / "file", 5'000);
        }
        expected_ = folders * allocated(top / "0/0/file");
    }

    // Calls `look` on every walking thread, for each file. Returns the number of threads.
    template <typename Look>
    std::size_t walk(Look look) {
        std::mutex lock;
        std::set<std::thread::id> threads;
        std::int64_t size = 0;
        const auto makeVisitor = [&]() -> FileVisitor {
            return [&](const ResourceValues& values) {
                std::this_thread::sleep_for(std::chrono::microseconds(500));
                const std::lock_guard held(lock);
                threads.insert(std::this_thread::get_id());
                size += Probe::allocatedSize(values);
                look();
            };
        };
        EXPECT_TRUE(walkTree(top, makeVisitor, [](const PlatformError& error) { ADD_FAILURE() << error.code; }));
        EXPECT_EQ(size, expected_);
        return threads.size();
    }

private:
    std::int64_t expected_ = 0;
};

TEST_F(WalkingThreads, AreMoreThanTheCoresAndFindTheSame) {
    makeFolders();
    const auto cores = static_cast<std::size_t>(std::max(1U, std::thread::hardware_concurrency()));
    const std::size_t threads = walk([] {});
    EXPECT_GT(threads, cores);
    EXPECT_LE(threads, std::max(std::size_t{mostLentThreads}, cores) + 1);
    EXPECT_EQ(measure(top).size, folders * allocated(top / "0/0/file"));
}

TEST_F(WalkingThreads, FindTheSameWithSixteenDescriptors) {
    makeFolders();
    walk([] {});
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{16, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    walk([] {});
    setrlimit(RLIMIT_NOFILE, &before);
}

// A program has more than the three that every one starts with.
TEST_F(WalkingThreads, FindTheSameWithSixteenDescriptorsOfWhichSixAreInUse) {
    makeFolders();
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{16, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    const std::array<Descriptor, 3> inUse = {Descriptor(dup(0)), Descriptor(dup(0)), Descriptor(dup(0))};
    walk([] {});
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_TRUE(inUse.back());
}

#ifdef __linux__

TEST_F(WalkingThreads, AreAllInTheBackgroundWhenTheWalkIs) {
    makeFolders();
    // Each thread's nice value and I/O priority.
    std::map<std::pair<int, long>, int> priorities;
    std::thread scan([&] {
        enterBackground();
        walk([&] {
            const auto self = static_cast<id_t>(syscall(SYS_gettid));
            ++priorities[{getpriority(PRIO_PROCESS, self), syscall(SYS_ioprio_get, 1, 0)}];
        });
    });
    scan.join();
    constexpr long lowestBestEffort = (2 << 13) | 7;
    EXPECT_THAT(priorities, ElementsAre(Pair(Pair(15, lowestBestEffort), folders)));
}

#endif

}  // namespace
}  // namespace vesk

// How many threads share work, while they wait and while they do not.

#include "platform/threads/thread_pool.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <ctime>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/threads/work_sharing.h"

namespace vesk {
namespace {

int coresHere() {
    return static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
}

// Work of equal items, each of which calls `what`.
class CountedWork {
public:
    // The largest number of threads at work at the same time.
    int mostAtOnce(int items, const std::function<void()>& what) {
        Shared work([] { return 0; },
                    [&](const int& count, Shared::Worker& worker) {
                        worker.startSharing();
                        if (count > 1) {
                            worker.add(count / 2);
                            worker.add(count - count / 2);
                            return;
                        }
                        const int now = ++atWork_;
                        int most = most_.load();
                        while (now > most && !most_.compare_exchange_weak(most, now)) {
                        }
                        what();
                        --atWork_;
                        ++done_;
                    });
        work.run(items);
        EXPECT_EQ(done_.load(), items);
        return most_.load();
    }

private:
    using Shared = WorkSharing<int, int>;
    std::atomic<int> atWork_ = 0;
    std::atomic<int> most_ = 0;
    std::atomic<int> done_ = 0;
};

// Waits like a thread that reads from the disk.
void waitAMoment() {
    std::this_thread::sleep_for(std::chrono::microseconds(500));
}

// Takes half a millisecond of CPU time.
void computeAMoment() {
    constexpr long enough = 500;  // microseconds
    timespec begin{};
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &begin);
    do {
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    } while ((now.tv_sec - begin.tv_sec) * 1'000'000 + (now.tv_nsec - begin.tv_nsec) / 1'000 < enough);
}

TEST(ThreadPoolTest, MoreThreadsThanCoresWorkWhileTheyWaitButABoundedNumber) {
    const int most = CountedWork().mostAtOnce(3'000, waitAMoment);
    EXPECT_GT(most, coresHere());
    EXPECT_LE(most, std::max(mostLentThreads, coresHere()) + 1);
}

TEST(ThreadPoolTest, NoMoreThanTheCoresWorkWhenNobodyWaitsAnyLonger) {
    CountedWork().mostAtOnce(3'000, waitAMoment);
    // A thread that waits for one of the work's own locks may look like one that waits for the disk.
    int most = 0;
    for (int tries = 0; tries < 50 && (most == 0 || most > coresHere()); ++tries) {
        most = CountedWork().mostAtOnce(100, computeAMoment);
    }
    EXPECT_LE(most, coresHere());
}

TEST(ThreadPoolTest, FewDescriptorsAreForFewThreads) {
    CountedWork().mostAtOnce(3'000, waitAMoment);
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit few{16, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
    const int most = CountedWork().mostAtOnce(1'000, waitAMoment);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_LE(most, std::max(2, coresHere() - 1) + 1);
}

TEST(ThreadPoolTest, AllWorkAtOnceSharesOneBound) {
    std::atomic<int> atWork = 0;
    std::atomic<int> most = 0;
    constexpr int callers = 13;
    std::vector<std::thread> threads;
    for (int i = 0; i < callers; ++i) {
        threads.emplace_back([&] {
            CountedWork().mostAtOnce(500, [&] {
                const int now = ++atWork;
                int seen = most.load();
                while (now > seen && !most.compare_exchange_weak(seen, now)) {
                }
                waitAMoment();
                --atWork;
            });
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_LE(most.load(), std::max(mostLentThreads, coresHere()) + callers);
}

// A disk that does not answer keeps all lent threads waiting.
TEST(ThreadPoolTest, OtherWorkIsDoneWhileAllLentThreadsAreHeldUp) {
    std::mutex lock;
    std::condition_variable released;
    bool isReleased = false;
    std::thread heldUp([&] {
        CountedWork().mostAtOnce(200, [&] {
            std::unique_lock held(lock);
            released.wait(held, [&] { return isReleased; });
        });
    });
    for (int i = 0; i < 20; ++i) {
        CountedWork().mostAtOnce(100, waitAMoment);
    }
    {
        const std::lock_guard held(lock);
        isReleased = true;
    }
    released.notify_all();
    heldUp.join();
}

}  // namespace
}  // namespace vesk

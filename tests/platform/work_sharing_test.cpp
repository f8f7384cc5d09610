#include "platform/threads/work_sharing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <set>
#include <thread>
#include <vector>

namespace vesk {
namespace {

// An item of this work brings up two of the next lower height, so that a height of h makes 2^(h+1) - 1 items.
using Doubling = WorkSharing<int, std::int64_t*>;

class Sum {
public:
    explicit Sum(int height) : height_(height) {}

    std::int64_t items() {
        std::vector<std::int64_t> tallies;
        tallies.reserve(64);
        Doubling work(
            [&] {
                threads_.insert(std::this_thread::get_id());
                return &tallies.emplace_back(0);
            },
            [](const int& height, Doubling::Worker& worker) {
                worker.startSharing();
                ++*worker.state;
                if (height > 0) {
                    worker.add(height - 1);
                    worker.add(height - 1);
                }
            });
        work.run(height_);
        states_ = tallies.size();
        std::int64_t sum = 0;
        for (const std::int64_t tally : tallies) {
            sum += tally;
        }
        return sum;
    }

    std::size_t states() const { return states_; }
    std::size_t threads() const { return threads_.size(); }

private:
    int height_;
    std::size_t states_ = 0;
    std::set<std::thread::id> threads_;
};

TEST(WorkSharingTest, EveryItemIsDoneOnce) {
    for (const int height : {0, 1, 5, 16}) {
        EXPECT_EQ(Sum(height).items(), (std::int64_t{2} << height) - 1) << height;
    }
}

TEST(WorkSharingTest, AThreadHasOneStateHoweverOftenItHelps) {
    Sum sum(16);
    sum.items();
    EXPECT_EQ(sum.states(), sum.threads());
    EXPECT_LE(sum.threads(), std::max(unsigned{mostLentThreads}, std::thread::hardware_concurrency()) + 1);
}

TEST(WorkSharingTest, ManyRunsAtOnceShareTheThreadPool) {
    std::atomic<std::int64_t> all = 0;
    std::vector<std::thread> callers;
    for (int i = 0; i < 13; ++i) {
        callers.emplace_back([&] {
            for (int again = 0; again < 20; ++again) {
                all += Sum(9).items();
            }
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(all.load(), 13 * 20 * 1023);
}

TEST(WorkSharingTest, WorkThatIsNotSharedStaysWithItsCaller) {
    std::set<std::thread::id> doers;
    WorkSharing<int, int> work([] { return 0; },
                               [&](const int& height, WorkSharing<int, int>::Worker& worker) {
                                   doers.insert(std::this_thread::get_id());
                                   if (height > 0) {
                                       worker.add(height - 1);
                                       worker.add(height - 1);
                                   }
                               });
    work.run(10);
    EXPECT_EQ(doers, std::set<std::thread::id>{std::this_thread::get_id()});
}

}  // namespace
}  // namespace vesk

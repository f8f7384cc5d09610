#include "platform/threads/helpers.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace vesk {

namespace {

class Helpers {
public:
    Helpers() {
        const unsigned cores = std::thread::hardware_concurrency();
        for (unsigned i = 1; i < cores; ++i) {
            try {
                std::thread([this] { serve(); }).detach();
                free_.fetch_add(1);
            } catch (const std::system_error&) {
                break;  // The system allows no more threads: fewer helpers it is.
            }
        }
    }

    bool anyFree() const { return free_.load(std::memory_order_relaxed) > 0; }

    bool call(std::function<void()> help) {
        const std::lock_guard lock(lock_);
        // A helper counts as taken from here on, so each call is sure of one that comes at once.
        if (free_.load(std::memory_order_relaxed) == 0) {
            return false;
        }
        free_.fetch_sub(1, std::memory_order_relaxed);
        calls_.push_back(std::move(help));
        called_.notify_one();
        return true;
    }

private:
    [[noreturn]] void serve() {
        std::unique_lock lock(lock_);
        for (;;) {
            called_.wait(lock, [this] { return !calls_.empty(); });
            const std::function<void()> help = std::move(calls_.back());
            calls_.pop_back();
            lock.unlock();
            help();
            lock.lock();
            free_.fetch_add(1, std::memory_order_relaxed);
        }
    }

    std::mutex lock_;
    std::condition_variable called_;
    std::vector<std::function<void()>> calls_;
    std::atomic<int> free_ = 0;
};

// Never destroyed: its threads may still be at work when the process ends.
Helpers& helpers() {
    static Helpers& made = *new Helpers;
    return made;
}

}  // namespace

bool aHelperIsFree() {
    return helpers().anyFree();
}

bool callHelper(std::function<void()> help) {
    return helpers().call(std::move(help));
}

}  // namespace vesk

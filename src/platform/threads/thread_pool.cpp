#include "platform/threads/thread_pool.h"

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

class ThreadPool {
public:
    ThreadPool() {
        const unsigned cores = std::thread::hardware_concurrency();
        for (unsigned i = 1; i < cores; ++i) {
            try {
                std::thread([this] { serve(); }).detach();
                idle_.fetch_add(1);
            } catch (const std::system_error&) {
                break;  // The system allows no more threads: work is shared among fewer.
            }
        }
    }

    bool hasIdleThread() const { return idle_.load(std::memory_order_relaxed) > 0; }

    bool run(std::function<void()> task) {
        const std::lock_guard lock(lock_);
        // A thread counts as taken from here on, so each task is sure of one that comes at once.
        if (idle_.load(std::memory_order_relaxed) == 0) {
            return false;
        }
        idle_.fetch_sub(1, std::memory_order_relaxed);
        tasks_.push_back(std::move(task));
        taskAdded_.notify_one();
        return true;
    }

private:
    [[noreturn]] void serve() {
        std::unique_lock lock(lock_);
        for (;;) {
            taskAdded_.wait(lock, [this] { return !tasks_.empty(); });
            const std::function<void()> task = std::move(tasks_.back());
            tasks_.pop_back();
            lock.unlock();
            task();
            lock.lock();
            idle_.fetch_add(1, std::memory_order_relaxed);
        }
    }

    std::mutex lock_;
    std::condition_variable taskAdded_;
    std::vector<std::function<void()>> tasks_;
    std::atomic<int> idle_ = 0;
};

// Never destroyed: its threads may still be at work when the process ends.
ThreadPool& threadPool() {
    static ThreadPool& pool = *new ThreadPool;
    return pool;
}

}  // namespace

bool hasIdleThread() {
    return threadPool().hasIdleThread();
}

bool runOnIdleThread(std::function<void()> task) {
    return threadPool().run(std::move(task));
}

}  // namespace vesk

#include "platform/threads/thread_pool.h"

#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <ctime>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace vesk {

namespace {

// Each walking thread needs three descriptors. With this number, they and the walks' callers have enough besides the
// folders that walks hold open, which may take half of all descriptors.
int threadsForDescriptors() {
    constexpr rlim_t descriptorsForEach = 16;
    rlimit allowed{};
    if (getrlimit(RLIMIT_NOFILE, &allowed) != 0) {
        return 0;
    }
    return static_cast<int>(std::min(allowed.rlim_cur / descriptorsForEach, rlim_t{mostLentThreads}));
}

class ThreadPool {
public:
    bool hasIdleThread() const {
        return lent_.load(std::memory_order_relaxed) < worthwhile_.load(std::memory_order_relaxed);
    }

    bool hasLentTooMany() const {
        return lent_.load(std::memory_order_relaxed) > worthwhile_.load(std::memory_order_relaxed);
    }

    bool run(std::function<void()> task) {
        const std::lock_guard lock(lock_);
        // Counts a thread as lent from here on, so that each task gets one at once.
        if (!hasIdleThread() || (asleep_ == static_cast<int>(tasks_.size()) && !startThread())) {
            return false;
        }
        lent_.fetch_add(1, std::memory_order_relaxed);
        tasks_.push_back(std::move(task));
        taskAdded_.notify_one();
        return true;
    }

    void lendMore() {
        int now = worthwhile_.load(std::memory_order_relaxed);
        // Only if all are lent: an unused thread does not show that another would help.
        if (now <= lent_.load(std::memory_order_relaxed) && now < threadsForDescriptors()) {
            worthwhile_.compare_exchange_strong(now, now + 1, std::memory_order_relaxed);
        }
    }

    // The limit of descriptors may have become lower since.
    void keepWithinDescriptors() {
        int now = worthwhile_.load(std::memory_order_relaxed);
        const int most = std::max(besideCaller_, threadsForDescriptors());
        if (now > most) {
            worthwhile_.compare_exchange_strong(now, most, std::memory_order_relaxed);
        }
    }

    void lendFewer() {
        int now = worthwhile_.load(std::memory_order_relaxed);
        if (now > besideCaller_) {
            worthwhile_.compare_exchange_strong(now, now - 1, std::memory_order_relaxed);
        }
    }

private:
    // False if the system allows no more threads; then fewer share the work.
    bool startThread() {
        try {
            std::thread([this] { serve(); }).detach();
            ++asleep_;
            return true;
        } catch (const std::system_error&) {
            return false;
        }
    }

    [[noreturn]] void serve() {
        std::unique_lock lock(lock_);
        for (;;) {
            taskAdded_.wait(lock, [this] { return !tasks_.empty(); });
            --asleep_;
            const std::function<void()> task = std::move(tasks_.back());
            tasks_.pop_back();
            lock.unlock();
            task();
            lock.lock();
            lent_.fetch_sub(1, std::memory_order_relaxed);
            ++asleep_;
        }
    }

    const int besideCaller_ = static_cast<int>(std::max(1U, std::thread::hardware_concurrency())) - 1;

    std::atomic<int> worthwhile_ = besideCaller_;
    std::atomic<int> lent_ = 0;

    std::mutex lock_;
    std::condition_variable taskAdded_;
    std::vector<std::function<void()>> tasks_;
    int asleep_ = 0;
};

// Never destroyed: its threads may still be at work when the process ends.
ThreadPool& threadPool() {
    static ThreadPool& pool = *new ThreadPool;
    return pool;
}

struct ThreadUse {
    // How often it gave up its core to wait.
    long waits;
    // Its CPU time.
    std::chrono::microseconds work;
};

ThreadUse useOfThisThread() {
    using std::chrono::microseconds;
    using std::chrono::seconds;
    rusage used{};
#ifdef __APPLE__
    // macOS does not report the waits of a single thread. Those of the process serve as well: while no thread waits for
    // the disk, there are few per millisecond.
    getrusage(RUSAGE_SELF, &used);
    timespec work{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &work);
    return {used.ru_nvcsw, seconds(work.tv_sec) + microseconds(work.tv_nsec / 1'000)};
#else
    getrusage(RUSAGE_THREAD, &used);
    return {used.ru_nvcsw, seconds(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
                               microseconds(used.ru_utime.tv_usec + used.ru_stime.tv_usec)};
#endif
}

}  // namespace

bool hasIdleThread() {
    return threadPool().hasIdleThread();
}

bool runOnIdleThread(std::function<void()> task) {
    return threadPool().run(std::move(task));
}

bool tooManyThreadsAtWork() {
    return threadPool().hasLentTooMany();
}

void DiskWatch::restart() {
    threadPool().keepWithinDescriptors();
    since_ = std::chrono::steady_clock::now();
    const ThreadUse use = useOfThisThread();
    waits_ = use.waits;
    worked_ = use.work;
}

void DiskWatch::look() {
    constexpr auto pause = std::chrono::milliseconds(1);
    // CPU time, since among many threads each waits long for its turn.
    constexpr auto longWork = std::chrono::milliseconds(1);
    // A single wait may have been for another thread.
    constexpr long fewestWaits = 2;
    const auto now = std::chrono::steady_clock::now();
    if (now - since_ < pause) {
        return;
    }
    since_ = now;
    const ThreadUse use = useOfThisThread();
    if (use.waits - waits_ >= fewestWaits) {
        hasWaited_ = true;
        threadPool().lendMore();
    } else if (use.work - worked_ >= longWork) {
        hasWaited_ = false;
        threadPool().lendFewer();
    } else {
        return;
    }
    waits_ = use.waits;
    worked_ = use.work;
}

}  // namespace vesk

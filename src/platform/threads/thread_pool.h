// The process's thread pool, for work that can be shared. While working threads keep the processor busy, it lends one
// thread fewer than there are cores; while they wait for the disk it lends more, so that the disk always has many
// requests. Its threads are started when first needed, sleep while idle, and live as long as the process. Callable from
// any thread.
#pragma once

#include <chrono>
#include <functional>

namespace vesk {

/// The most threads that the pool lends at the same time, unless there are more cores: enough to keep a disk busy. A
/// process that may open only few files gets fewer, since a walking thread needs descriptors.
constexpr int mostLentThreads = 24;

/// Whether the pool would lend a thread. Costs two relaxed loads; the answer may be out of date.
bool hasIdleThread();

/// Runs `task` on an idle thread and returns true; returns false if the pool lends none. Nothing is queued.
bool runOnIdleThread(std::function<void()> task);

/// Whether the pool has lent more threads than are useful now: a thread that can stop should.
bool tooManyThreadsAtWork();

/// Watches one working thread and tells the pool whether it waits for the disk. Created and used on that thread.
class DiskWatch {
public:
    DiskWatch() { restart(); }

    /// Forgets everything so far. Call it after a wait for other threads.
    void restart();

    /// Call this often during the work. Checks the clock and, once a millisecond, whether the thread has had to wait
    /// more than once: if so, the pool may lend one more thread; if not, one fewer.
    void look();

    /// Whether the thread waited for the disk at the last check.
    bool hasWaited() const { return hasWaited_; }

private:
    std::chrono::steady_clock::time_point since_;
    long waits_ = 0;
    std::chrono::microseconds worked_{0};
    bool hasWaited_ = false;
};

}  // namespace vesk

// The process's thread pool, for work that can be shared. As long as those at work keep the processor busy, it lends
// one thread fewer than there are cores; while they wait for the disk it lends more, so that the disk has many requests
// to serve at a time. Its threads are started when first needed, sleep while idle, and live as long as the process.
// Callable from any thread.
#pragma once

#include <chrono>
#include <functional>

namespace vesk {

/// The most threads that the pool ever lends at once, unless there are more cores: a disk that serves many requests at
/// a time is kept busy by these. A process that may open few files has fewer, since a walking thread needs some.
constexpr int mostLentThreads = 24;

/// Whether the pool would lend a thread. Costs two plain reads of memory; the answer may be out of date.
bool hasIdleThread();

/// Has an idle thread run `task` as soon as it wakes, and returns true; returns false when the pool lends none. Nothing
/// is ever queued.
bool runOnIdleThread(std::function<void()> task);

/// Whether the pool has lent more threads than are worth it by now: whoever can should give his back.
bool tooManyThreadsAtWork();

/// Watches one thread at work and tells the pool whether it waits for the disk. Made and used on that thread.
class DiskWatch {
public:
    DiskWatch() { restart(); }

    /// Forgets what was so far: to be called after a wait for other threads.
    void restart();

    /// To be called often during the work. Looks at the clock and, once a millisecond, at how often the thread had to
    /// wait: then the pool may lend one thread more, otherwise one fewer.
    void look();

    /// Whether the thread waited for the disk when that was last looked at.
    bool hasWaited() const { return hasWaited_; }

private:
    std::chrono::steady_clock::time_point since_;
    long waits_ = 0;
    std::chrono::microseconds worked_{0};
    bool hasWaited_ = false;
};

}  // namespace vesk

// The process's thread pool: one thread fewer than there are cores, for work that can be shared. Its threads start at
// the first use, sleep while idle, and live as long as the process. Used by WorkSharing; callable from any thread.
#pragma once

#include <functional>

namespace vesk {

/// Whether a thread of the pool is idle. Costs one relaxed atomic load; the answer may be out of date.
bool hasIdleThread();

/// Wakes an idle thread to run `task` and returns true; returns false if no thread is idle. No task ever waits for a
/// busy thread.
bool runOnIdleThread(std::function<void()> task);

}  // namespace vesk

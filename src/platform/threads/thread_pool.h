// The process's thread pool: one thread fewer than there are cores, for work that can be shared. Its threads are
// started at the first use, sleep while idle, and live as long as the process. Callable from any thread.
#pragma once

#include <functional>

namespace vesk {

/// Whether a thread of the pool is idle. Costs one plain read of memory; the answer may be out of date.
bool hasIdleThread();

/// Has an idle thread run `task` as soon as it wakes, and returns true; returns false when no thread is idle. Nothing
/// is ever queued.
bool runOnIdleThread(std::function<void()> task);

}  // namespace vesk

// How many of Store's threads are running: those of a scan, a clean, an undo. A quitting program leaves behind the ones
// that it cannot wait for, and must know of them. Callable from any thread.
#pragma once

#include <cstddef>
#include <memory>

namespace vesk {

/// Counts as a running thread until its last copy is gone. A thread's function holds one.
using WorkToken = std::shared_ptr<const void>;
WorkToken takeWorkToken();

/// Threads that are running.
std::size_t runningWork();

}  // namespace vesk

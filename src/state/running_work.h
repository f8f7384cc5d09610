// Counts the threads that are running for Store and the views: of a scan, a clean, an undo, loading, saving, a report.
// A quitting program does not wait for all of them and must know how many are left. Callable from any thread.
#pragma once

#include <cstddef>
#include <memory>

namespace vesk {

/// Counts as one running thread until its last copy is destroyed. Each thread's function holds one.
using WorkToken = std::shared_ptr<const void>;
WorkToken takeWorkToken();

/// The number of running threads.
std::size_t runningWork();

}  // namespace vesk

// How many of Store's threads are at work: those of a scan, a clean, an undo. A quitting program leaves behind the ones
// that it cannot wait for, and has to know of them. Callable from any thread.
#pragma once

#include <cstddef>
#include <memory>

namespace vesk {

/// Counts as a thread at work until its last copy is gone. For a thread's function to hold.
using WorkToken = std::shared_ptr<const void>;
WorkToken takeWorkToken();

/// Threads at work.
std::size_t workLeft();

}  // namespace vesk

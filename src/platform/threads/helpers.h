// Threads that lend a hand with work that can be divided: one fewer than there are cores, the same for all work of the
// process, asleep while nobody calls. Made at the first call, they live as long as the process. Callable from any
// thread.
#pragma once

#include <functional>

namespace vesk {

/// Whether a helper is free at this moment. Costs one plain read of memory; the answer may be out of date.
bool aHelperIsFree();

/// Has a free helper run `help` as soon as it wakes, and returns true; or returns false when none is free.
bool callHelper(std::function<void()> help);

}  // namespace vesk

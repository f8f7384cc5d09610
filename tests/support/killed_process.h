// Work that is killed in the middle: in a process of its own, at a chosen system call, as a crash or `kill -9` would.
#pragma once

#include <functional>

namespace vesk::testing {

/// Marks, inside the work of `runKilledAt`, where the counting of system calls begins.
void startCountingCalls();

struct KilledRun {
    /// Whether the process was killed; false when it ended before it came to that call.
    bool killed = false;
    /// Whether a process that was not killed ended well: the work came to its end and returned true.
    bool succeeded = false;
    /// System calls counted, of all its threads.
    int calls = 0;
};

/// Runs the work in a process of its own and kills it as it is about to make its `number`-th system call (from 1)
/// after `startCountingCalls`. The calling process must have no other thread.
KilledRun runKilledAt(int number, const std::function<bool()>& work);

/// Runs the work in a process of its own and returns what it returned; false also when it crashed.
bool runApart(const std::function<bool()>& work);

}  // namespace vesk::testing

// Kills work in the middle: in a process of its own, at a chosen system call, like a crash or `kill -9`.
#pragma once

#include <functional>

namespace vesk::testing {

/// In the work of `runKilledAt`: starts the counting of system calls.
void startCountingCalls();

struct KilledRun {
    /// Whether the process was killed; false if it ended before that call.
    bool killed = false;
    /// Whether the work of a process that was not killed returned true.
    bool succeeded = false;
    /// System calls counted, of all its threads.
    int calls = 0;
};

/// Runs the work in a process of its own and kills it as it is about to make its `number`-th system call (from 1)
/// after `startCountingCalls`. The calling process must have no other thread.
KilledRun runKilledAt(int number, const std::function<bool()>& work);

/// Runs the work in a process of its own and returns its result; false if it crashed.
bool runApart(const std::function<bool()>& work);

}  // namespace vesk::testing

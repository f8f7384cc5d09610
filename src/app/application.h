// All that Vesk is besides its name: what main() does for the application and for its demo. Main thread.
#pragma once

#include <functional>

#include "state/store.h"

namespace vesk {

/// Opens the window on the world in force, runs until it is closed (or a signal asks for the end), and sees a clean or
/// an undo under way to its end in the books. Does not start, and says so in a window and on standard error, on a home
/// that must not be scanned; of two at once the second only brings the first one's window forward. `tidyUp` is called
/// last, however this ends. Returns the exit status.
int runProgram(
    int argc, char** argv, Store::Sources sources = Store::Sources(), const std::function<void()>& tidyUp = [] {});

/// The last thing of main(): ends every tool that still runs. Returns `status` if no thread is left at work, and
/// otherwise ends the process there and then.
int leave(int status);

}  // namespace vesk

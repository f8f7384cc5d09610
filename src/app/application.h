// What the main() of the application and that of the demo have in common. Main thread only.
#pragma once

#include <functional>

#include "state/store.h"

namespace vesk {

/// Opens the window and runs until it is closed or a termination signal arrives; a running clean or undo is then ended
/// and recorded (see Store::finish). If the home must not be scanned, shows a startup error instead, in a window and on
/// standard error. A second instance only brings the first one's window to the front. Calls `tidyUp` last, however this
/// ends. Returns the exit status.
int runProgram(
    int argc, char** argv, Store::Sources sources = Store::Sources(), const std::function<void()>& tidyUp = [] {});

/// To be called at the end of main(). Kills every tool still running. Returns `status` if no thread is left running;
/// otherwise ends the process with it at once.
int leave(int status);

}  // namespace vesk

// How a program comes to its end. Main thread only.
#pragma once

namespace vesk {

/// Has the signals that ask a program to end (SIGTERM, SIGINT, SIGHUP) written, a byte each, to a descriptor instead:
/// the one returned, which whoever runs the event loop watches. -1 when that cannot be. Call it once.
int descriptorOfEndSignals();

/// Has a write that nobody reads any more, or for which a file may not grow, fail instead of ending the program
/// (SIGPIPE, SIGXFSZ). Programs that this one runs get the system's own way back.
void outliveFailedWrites();

/// Ends the process at once, with every thread as it stands. Standard output is written out; destructors and handlers
/// of static storage do not run.
[[noreturn]] void endNow(int status);

}  // namespace vesk

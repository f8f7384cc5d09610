// Termination signals, and immediate exit. Main thread only.
#pragma once

namespace vesk {

/// Makes each termination signal (SIGTERM, SIGINT, SIGHUP) write a byte to a pipe instead of ending the program; a
/// signal that is ignored stays ignored. Returns the descriptor to watch in the event loop; -1 on failure. Call it
/// once.
int terminationSignalDescriptor();

/// Ignores SIGPIPE and SIGXFSZ, so that a write without a reader or past the file size limit fails instead of ending
/// the program. Programs started by runProcess get the default behaviour back.
void outliveFailedWrites();

/// Ends the process immediately, whatever its threads are doing. Flushes standard output; runs no static destructors or
/// exit handlers.
[[noreturn]] void terminateNow(int status);

}  // namespace vesk

// How the program is asked to end, and how it ends at once. Main thread only.
#pragma once

namespace vesk {

/// Writes a byte to a descriptor for each signal that asks the program to end (SIGTERM, SIGINT, SIGHUP), instead of
/// ending it. Returns that descriptor, for the event loop to watch; -1 when this fails. Call it once.
int terminationSignalDescriptor();

/// Has a write fail instead of ending the program when nobody reads it any more, or when its file may not grow
/// (SIGPIPE, SIGXFSZ). Programs that this one runs get the default behaviour back.
void outliveFailedWrites();

/// Ends the process at once, whatever its threads are doing. Flushes standard output; runs no destructors and handlers
/// of static storage.
[[noreturn]] void terminateNow(int status);

}  // namespace vesk

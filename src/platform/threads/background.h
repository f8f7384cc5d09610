// Background priority, for work that must not slow down the user's. Callable from any thread.
#pragma once

namespace vesk {

/// Gives the calling thread, for the rest of its life, the priority of background work: on Linux nice 15 and the
/// lowest best-effort priority at the disk, for this thread alone; on macOS the utility class, which covers both.
/// Calling it again does nothing. A refusal is ignored: the work is then only less polite.
void enterBackground();

/// Whether the calling thread has entered the background.
bool inBackground();

}  // namespace vesk

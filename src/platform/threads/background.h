// Background priority, for work that must not slow down the user's. Callable from any thread.
#pragma once

namespace vesk {

/// Gives the calling thread background priority for the rest of its life: nice 15 for this thread alone on Linux, the
/// utility QoS class on macOS. Calling it again does nothing. Failure is ignored: the work then only runs at normal
/// priority.
void enterBackground();

/// Whether the calling thread has entered the background.
bool inBackground();

}  // namespace vesk

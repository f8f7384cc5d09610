// The user's wish for less motion on screen.
#pragma once

namespace vesk {

/// Whether the desktop's settings ask programs to leave out animations; false when that cannot be told. Reads a few
/// small files of the user's on Linux, the accessibility settings on macOS. Call it from the main thread.
bool reducedMotionWanted();

}  // namespace vesk

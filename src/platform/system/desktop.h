// The desktop's settings. Main thread.
#pragma once

namespace vesk {

/// Whether the desktop's settings ask programs not to animate; false if they cannot be read. Reads a few small files of
/// the user's on Linux, the accessibility settings on macOS.
bool reducedMotionWanted();

/// Asks the system to open its privacy settings at Full Disk Access. Does nothing on a system without that setting.
/// Does not wait; the outcome is unknown.
void openFullDiskAccessSettings();

}  // namespace vesk

// The desktop's settings. Main thread.
#pragma once

namespace vesk {

/// Whether the desktop's settings ask programs not to animate; false if they cannot be read. Reads a few small files of
/// the user's on Linux, the accessibility settings on macOS.
bool reducedMotionWanted();

/// The text size that the desktop's settings ask for, as a multiple of the usual size; 1 if they do not say or cannot
/// be read. Reads the same files on Linux. Always 1 on macOS, where the display's resolution decides.
double desktopTextScale();

/// Asks the system to open its privacy settings at Full Disk Access. Does nothing on a system without that setting.
/// Does not wait; the outcome is unknown.
void openFullDiskAccessSettings();

}  // namespace vesk

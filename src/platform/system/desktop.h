// What the desktop's settings ask of a program, and its own settings windows. Main thread.
#pragma once

namespace vesk {

/// Whether the desktop's settings ask programs to leave out animations; false when they cannot be read. Reads a few
/// small files of the user's on Linux, the accessibility settings on macOS.
bool reducedMotionWanted();

/// How large the desktop's settings ask for text to be, as a multiple of the usual size; 1 when they say nothing or
/// cannot be read. Reads the same files on Linux. On macOS it is always 1: there, the display's resolution sets it.
double desktopTextScale();

/// Asks the system to open its privacy settings at the list of applications with Full Disk Access. Does nothing on a
/// system without that list. Does not wait; the outcome is not known.
void openFullDiskAccessSettings();

}  // namespace vesk

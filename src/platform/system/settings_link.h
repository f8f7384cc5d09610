// The system's own settings windows.
#pragma once

namespace vesk {

/// Asks the system to open its privacy settings at the list of applications with Full Disk Access. Does nothing on a
/// system without that list. Main thread; does not wait; the outcome is not known.
void openFullDiskAccessSettings();

}  // namespace vesk

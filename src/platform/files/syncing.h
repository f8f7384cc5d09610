// What survives a power loss: what a file system guarantees, and how to sync it. Used by the Trash; callable from any
// thread.
#pragma once

namespace vesk {

/// Whether the file system of an open folder preserves the order of renames, so that after a power loss no change is
/// present without all earlier ones. False if unknown.
bool keepsOrderOfNames(int folder);

/// Waits until all changes to names in an open folder are on the disk and, if the file system preserves their order,
/// all earlier ones elsewhere on it. Returns false if that failed.
bool syncNames(int folder);

}  // namespace vesk

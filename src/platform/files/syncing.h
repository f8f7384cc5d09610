// What survives a power loss: what a file system guarantees, and how to sync it. Used by the Trash; callable from any
// thread.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

namespace vesk {

/// Whether the file system of an open folder preserves the order of renames, so that after a power loss no change is
/// present without all earlier ones. False if unknown.
bool keepsOrderOfNames(int folder);

/// The same for many folders, asked once per device, so for no longer than one run: devices come and go.
class NameOrder {
public:
    bool isKept(int folder);

private:
    std::map<std::uint64_t, bool> known_;
};

/// Waits until files that were just written, and all earlier changes to names, are on the disk. All of them lie on one
/// file system, which preserves the order of names. Returns false if that failed.
bool syncNewFiles(const std::vector<int>& files);

/// Waits until all changes to names in an open folder are on the disk and, if the file system preserves their order,
/// all earlier ones elsewhere on it. Returns false if that failed.
bool syncNames(int folder);

}  // namespace vesk

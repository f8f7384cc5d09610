// What is on the disk when the power goes: how far a file system can be relied on, and how to have it write. Called by
// the Trash; callable from any thread.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

namespace vesk {

/// Whether the file system of an open folder keeps the order in which names are changed, so that after a power loss no
/// change is there without an earlier one. False where that is not known.
bool keepsOrderOfNames(int folder);

/// The same for many folders, asked once for each device, so for no longer than one run: devices come and go.
class NameOrder {
public:
    bool isKept(int folder);

private:
    std::map<std::uint64_t, bool> known_;
};

/// Waits until files that were just written are on the disk, and with them all earlier changes of names. All of them
/// lie on one file system, which keeps the order of names. Returns false when that is not known.
bool syncNewFiles(const std::vector<int>& files);

/// Waits until all changes of names in an open folder are on the disk, and, where the file system keeps their order,
/// all earlier ones elsewhere on it too. Returns false when that is not known.
bool syncNames(int folder);

}  // namespace vesk

// The Trash of the freedesktop.org Trash specification 1.0, on any POSIX system: the home Trash in World::dataHome, and
// a Trash at the top of every other volume. Used by trash*.cpp alone; callable from any thread.
#pragma once

#include <filesystem>
#include <string>

#include "platform/trash/trash.h"

namespace vesk {

/// An item whose folder is open and known to be the one that was seen.
struct HeldItem {
    std::filesystem::path path;
    /// The last part of `path`.
    std::string name;
    /// The folder's descriptor.
    int folder = -1;
};

/// Moves an item to the Trash of its volume.
TrashOutcome moveToFreedesktopTrash(const HeldItem& item);

/// Removes the record of an item that has left such a Trash. Does nothing for an item of another kind of Trash.
void forgetTrashed(const std::filesystem::path& trashed);

/// The same for an item that is not in the Trash any more, if the record says that it came from `original`: what an
/// undo leaves behind that was stopped half way.
void forgetLostRecord(const std::filesystem::path& trashed, const std::filesystem::path& original);

/// Moves an item to the Trash that this system's user sees (trash_linux.cpp, trash_macos.cpp).
TrashOutcome moveToUsersTrash(const HeldItem& item);

}  // namespace vesk

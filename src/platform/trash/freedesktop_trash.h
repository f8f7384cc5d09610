// The Trash of the freedesktop.org Trash specification 1.0, on any POSIX system: the home Trash in World::dataHome, and
// a Trash at the top of every other volume. Used only by trash*.cpp; callable from any thread.
#pragma once

#include "platform/trash/held_item.h"
#include "platform/trash/trash.h"

namespace vesk {

/// Moves an item to the Trash of its volume.
TrashOutcome moveToFreedesktopTrash(const HeldItem& item);

/// Whether the user's Trash keeps records that Vesk can read (trash_linux.cpp, trash_macos.cpp).
bool usersTrashKeepsRecords();

/// Moves an item to the user's Trash.
TrashOutcome moveToUsersTrash(const HeldItem& item);

}  // namespace vesk

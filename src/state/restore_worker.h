// The part of an undo that uses the disk. Runs off the main thread, on copies, and does not use Store.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "platform/trash/trash.h"

namespace vesk {

/// Restores the items one by one, in order, and returns how many are back. Skips an item that is no longer in the
/// Trash, whose original place is taken, or that cannot be moved. Calls `stopRequested` before each.
std::size_t restoreItems(
    const std::vector<TrashedItem>& items, const std::function<bool()>& stopRequested = [] { return false; });

}  // namespace vesk

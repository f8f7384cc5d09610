// The part of an undo that touches the disk. Runs off the main thread, on copies, and knows nothing of Store.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "platform/trash/trash.h"

namespace vesk {

/// Puts the items back one by one, in order, and returns how many came back. An item that is no longer in the Trash,
/// whose place is taken, or which the system does not let go is passed over. `stopRequested` is asked before each.
std::size_t restoreItems(
    const std::vector<TrashedItem>& items, const std::function<bool()>& stopRequested = [] { return false; });

}  // namespace vesk

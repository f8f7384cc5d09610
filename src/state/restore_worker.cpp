#include "state/restore_worker.h"

namespace vesk {

std::size_t restoreItems(const std::vector<TrashedItem>& items, const std::function<bool()>& stopRequested) {
    std::size_t restored = 0;
    for (const TrashedItem& item : items) {
        if (stopRequested()) {
            break;
        }
        if (!putBack(item)) {
            ++restored;
        }
    }
    return restored;
}

}  // namespace vesk

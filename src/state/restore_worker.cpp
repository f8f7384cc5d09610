#include "state/restore_worker.h"

#include <filesystem>

#include "platform/files/syncing.h"

namespace vesk {

std::size_t restoreItems(const std::vector<TrashedItem>& items, const std::function<bool()>& stopRequested) {
    std::size_t restored = 0;
    std::vector<std::filesystem::path> tried;
    NameOrder order;
    for (const TrashedItem& item : items) {
        if (stopRequested()) {
            break;
        }
        tried.push_back(item.place);
        if (!restoreItem(item, order)) {
            ++restored;
        }
    }
    // The order matters: the moves must be on the disk before their records go, and the caller stores the history last.
    if (syncMoves(tried)) {
        for (std::size_t i = 0; i < tried.size(); ++i) {
            forgetReturned(items[i]);
        }
    }
    return restored;
}

}  // namespace vesk

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
    // The moves first, then the end of their records, and after both the history, which the caller stores.
    if (syncMoves(tried)) {
        for (std::size_t i = 0; i < tried.size(); ++i) {
            forgetReturned(items[i]);
        }
    }
    return restored;
}

}  // namespace vesk

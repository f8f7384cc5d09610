#include "state/restore_worker.h"

#include "platform/trash/trash.h"

namespace vesk {

std::size_t restoreMoves(const std::vector<HistoryEntry::Move>& moves, const std::function<bool()>& stopRequested) {
    std::size_t restored = 0;
    for (const HistoryEntry::Move& move : moves) {
        if (stopRequested()) {
            break;
        }
        if (!putBack(move.trashed, move.original)) {
            ++restored;
        }
    }
    return restored;
}

}  // namespace vesk

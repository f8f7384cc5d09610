#include "state/restore_worker.h"

#include <filesystem>

#include "platform/trash.h"

namespace vesk {

std::size_t restoreMoves(const std::vector<HistoryEntry::Move>& moves, const std::function<bool()>& stopRequested) {
    std::size_t restored = 0;
    std::vector<std::filesystem::path> trashed;
    std::vector<Returned> returned;
    for (const HistoryEntry::Move& move : moves) {
        if (stopRequested()) {
            break;
        }
        trashed.emplace_back(move.trashed);
        const bool isBack = !putBack(move.trashed, move.original);
        returned.push_back(isBack ? Returned::now : Returned::perhapsBefore);
        restored += isBack ? 1 : 0;
    }
    // The moves first, then the end of their records, and after both the history, which the caller stores.
    if (syncMoves(trashed)) {
        for (std::size_t i = 0; i < returned.size(); ++i) {
            forgetReturned(moves[i].trashed, moves[i].original, returned[i]);
        }
    }
    return restored;
}

}  // namespace vesk

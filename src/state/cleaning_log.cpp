#include "state/cleaning_log.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace vesk {

void keepKnownPlaces(CleaningResult& result) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < result.moves.size(); ++i) {
        if (!result.moves[i].trashed.empty()) {
            std::swap(result.moves[kept], result.moves[i]);
            std::swap(result.receipt[kept], result.receipt[i]);
            ++kept;
        }
    }
    result.moves.resize(kept);
    result.receipt.resize(kept);
}

void CleaningLog::addItem(const SeenItem& item, const TrashOutcome& outcome) {
    const std::lock_guard guard(lock_);
    if (outcome.error) {
        ++result_.failures;
        return;
    }
    result_.moves.push_back({item.path.string(), outcome.place.string(), item.size});
    result_.receipt.push_back(outcome.identity);
}

void CleaningLog::takeBack(const std::filesystem::path& trashed) {
    const std::lock_guard guard(lock_);
    // Among the last, since items are put back soon.
    const auto found = std::find_if(result_.moves.rbegin(), result_.moves.rend(),
                                    [&](const HistoryEntry::Move& move) { return move.trashed == trashed.string(); });
    if (found == result_.moves.rend()) {
        return;
    }
    const auto index = std::distance(result_.moves.begin(), found.base()) - 1;
    result_.moves.erase(result_.moves.begin() + index);
    result_.receipt.erase(result_.receipt.begin() + index);
    ++result_.failures;
}

void CleaningLog::addSnapshot(bool isRemoved) {
    const std::lock_guard guard(lock_);
    ++(isRemoved ? result_.snapshotsRemoved : result_.failures);
}

CleaningResult CleaningLog::result() const {
    const std::lock_guard guard(lock_);
    return result_;
}

CleaningResult CleaningLog::takeResult() {
    const std::lock_guard guard(lock_);
    return std::exchange(result_, {});
}

void CleaningLog::storeReceipt(const Uuid& run, const Receipts& receipts) {
    CleaningResult soFar;
    {
        const std::lock_guard guard(lock_);
        if (std::exchange(isReceiptClaimed_, true)) {
            return;
        }
        soFar = result_;
    }
    keepKnownPlaces(soFar);
    const bool isStored = !soFar.moves.empty() && receipts.write(run, soFar.receipt);
    const std::lock_guard guard(lock_);
    isReceiptStored_ = isStored;
}

bool CleaningLog::isReceiptStored() const {
    const std::lock_guard guard(lock_);
    return isReceiptStored_;
}

}  // namespace vesk

// What a clean has done so far. The worker writes it step by step; whoever finishes the run reads it, even while the
// worker hangs in a step. Callable from any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <vector>

#include "platform/trash/trash.h"
#include "state/history_entry.h"
#include "state/receipts.h"

namespace vesk {

/// The result of a clean.
struct CleaningResult {
    /// The items now in the Trash, in the work list's order. `trashed` is empty if the system did not say where.
    std::vector<HistoryEntry::Move> moves;
    /// What is known about each of these items.
    Receipt receipt;
    /// Items that were not moved and snapshots that were not deleted.
    std::int64_t failures = 0;
    std::int64_t snapshotsRemoved = 0;
};

/// Removes the items whose place in the Trash is unknown: they were freed, but cannot be restored.
void keepKnownPlaces(CleaningResult& result);

class CleaningLog {
public:
    void addItem(const SeenItem& item, const TrashOutcome& outcome);
    /// Records that the item at this place in the Trash was restored; it now counts as a failure.
    void noteRestored(const std::filesystem::path& trashed);
    void addSnapshot(bool isRemoved);
    CleaningResult result() const;
    /// The same, and empties the log. For whoever finishes the run.
    CleaningResult takeResult();

    /// Stores the receipt of the run. Only the first call does so, whether by the worker or by whoever finishes the
    /// run.
    void storeReceipt(const Uuid& run, const Receipts& receipts);
    bool isReceiptStored() const;

private:
    mutable std::mutex lock_;
    CleaningResult result_;
    bool isReceiptClaimed_ = false;
    bool isReceiptStored_ = false;
};

}  // namespace vesk

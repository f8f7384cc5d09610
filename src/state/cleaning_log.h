// What a clean has done so far: the one record of it, written by the worker step by step and read by whoever finishes
// the run, also while the worker still hangs in a step. Callable from any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <mutex>
#include <vector>

#include "platform/trash/trash.h"
#include "state/history_entry.h"
#include "state/receipts.h"

namespace vesk {

/// What a clean came to.
struct CleaningResult {
    /// The items that the Trash took, in work-list order. `trashed` is empty where the system did not tell the place.
    std::vector<HistoryEntry::Move> moves;
    /// What is known of each of these items.
    Receipt receipt;
    /// Items that could not be moved and snapshots that could not be deleted.
    std::int64_t failures = 0;
    std::int64_t snapshotsRemoved = 0;
};

/// Takes out the items whose place in the Trash is not known: they were freed, but cannot be undone.
void keepKnownPlaces(CleaningResult& result);

class CleaningLog {
public:
    void addItem(const SeenItem& item, const TrashOutcome& outcome);
    /// Notes that the item which lay at this place in the Trash is back where it was, and counts as not moved.
    void takeBack(const std::filesystem::path& trashed);
    void addSnapshot(bool isRemoved);
    CleaningResult result() const;
    /// The same for the one that ends the run: nothing is left here then.
    CleaningResult takeResult();

    /// Stores the receipt of the run: by the first that asks, the worker or whoever did not wait for it.
    void storeReceipt(const Uuid& run, const Receipts& receipts);
    bool isReceiptStored() const;

private:
    mutable std::mutex lock_;
    CleaningResult result_;
    bool isReceiptClaimed_ = false;
    bool isReceiptStored_ = false;
};

}  // namespace vesk

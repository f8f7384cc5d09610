// The part of a clean that touches the disk. Runs off the main thread, on copies, and knows nothing of Store.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "platform/trash/trash.h"
#include "state/history_entry.h"
#include "state/receipts.h"

namespace vesk {

/// One entry of a selected card.
struct CleaningItem {
    SeenItem item;
    /// Bytes, as the scan measured them.
    std::int64_t size = 0;
};

struct CleaningResult {
    /// The items that the Trash took, in work-list order. `trashed` is empty where the system did not tell the place.
    std::vector<HistoryEntry::Move> moves;
    /// What is known of each of these items.
    Receipt receipt;
    /// Items that could not be moved and snapshots that could not be deleted.
    std::int64_t failures = 0;
    std::int64_t snapshotsRemoved = 0;
};

/// What a clean has done so far, where a program that quits can find it while the worker still hangs. Each call takes
/// one lock; callable from any thread.
class CleaningLog {
public:
    /// Takes over what `soFar` holds beyond the last call's; steps are only ever added.
    void update(const CleaningResult& soFar);
    CleaningResult result() const;

    /// Whether the caller is the first to ask: it is the one to store the receipt, the worker or whoever did not wait
    /// for it.
    bool claimReceipt();
    /// Notes that the receipt has been stored.
    void setReceiptStored();
    bool isReceiptStored() const;

private:
    mutable std::mutex lock_;
    CleaningResult result_;
    bool isReceiptClaimed_ = false;
    bool isReceiptStored_ = false;
};

/// What the worker acts with.
struct CleaningTools {
    std::function<TrashOutcome(const SeenItem&)> moveToTrash;
    /// Told, once no more items come, where all those lie that were moved: they have to be on the disk before anything
    /// is stored that tells of them.
    std::function<void(const std::vector<std::filesystem::path>& trashed)> settle =
        [](const std::vector<std::filesystem::path>&) {};
    /// Runs a program and returns its exit status.
    std::function<int(const std::string& path, const std::vector<std::string>& arguments)> runTool;
    /// Asked before each step: whether to stop there. What was not tried then counts neither as done nor as failed.
    std::function<bool()> stopRequested = [] { return false; };
    /// Told after each step what is done so far: the next one may hang.
    std::function<void(const CleaningResult&)> stepDone = [](const CleaningResult&) {};
};

/// Takes out the items whose place in the Trash is not known: they were freed, but cannot be undone.
void keepKnownPlaces(CleaningResult& result);

/// Moves the items to the Trash one by one, then deletes the snapshots one by one. Nothing is tried twice.
CleaningResult runCleaning(const std::vector<CleaningItem>& workList, const std::vector<std::string>& snapshotIDs,
                           const CleaningTools& tools);

}  // namespace vesk

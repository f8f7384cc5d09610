// The history of Store: the runs that views show, what of them is stored, and what is noted of their items beside them.
// Lives on the main thread.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "platform/system/preferences.h"
#include "platform/trash/trash.h"
#include "platform/uuid.h"
#include "state/detached_task.h"
#include "state/history_entry.h"
#include "state/history_list.h"
#include "state/receipts.h"

namespace vesk {

class History {
public:
    /// Reads what these preferences hold; they outlive the history.
    explicit History(Preferences& preferences);

    HistoryList& list() { return list_; }
    /// Newest first.
    const std::vector<HistoryEntry>& entries() const { return list_.entries(); }
    /// The row of the entry with this id; absent when there is none.
    std::optional<std::size_t> rowOf(const Uuid& id) const;

    /// Where what is noted of a run's items is kept.
    const Receipts& receipts() const { return receipts_; }
    /// Puts together what is known of the items of an entry. The function that does it reads the disk; callable on any
    /// thread, also when the history is gone.
    std::function<std::vector<TrashedItem>()> itemsOf(const HistoryEntry& entry) const;

    /// Puts an entry before all others.
    void add(HistoryEntry entry) { list_.prepend(std::move(entry)); }
    /// Keeps the receipt of a run, which could not be stored yet, for the next save.
    void keepReceipt(const Uuid& run, Receipt items) { unsavedReceipts_.push_back({run, std::move(items)}); }
    /// Notes whether the run with this id is undone, which views hear of by `tellUndone`. Both do nothing when it is
    /// not here any more.
    void noteUndone(const Uuid& id, bool undone);
    void tellUndone(const Uuid& id);

    /// Takes over what somebody else has stored since, drops all but the 50 newest entries and stores the rest. A
    /// failure leaves what was stored before.
    void save();
    /// The same on a thread of its own, since a large history takes seconds to store; where none can be had, at once.
    /// Then `done` is called on this thread. A save that is still under way is waited for first.
    void saveThen(const std::function<void()>& done);
    /// Waits for a save under way; what it has to be followed by is done when this returns.
    void finishSaving();
    /// Whether nothing is left to store of what was to be saved.
    bool isSaved() const { return isSaved_ && unsavedReceipts_.empty(); }

private:
    // A receipt that could not be stored yet.
    struct UnsavedReceipt {
        Uuid run;
        Receipt items;
    };

    // What a save needs, and what it comes to; on any thread.
    struct Task;
    struct Outcome {
        bool isStored = false;
        // Of the bytes that were found or stored.
        std::optional<std::size_t> fingerprint = {};
        // What somebody else has stored; nothing was replaced then.
        std::optional<std::vector<HistoryEntry>> others = {};
        // Whether the entries are more than can be stored.
        bool isTooLong = false;
    };

    static Outcome store(const Task& task);
    Task task() const;
    void prepareToSave();
    // Returns whether to try again.
    bool take(Outcome outcome);
    void tryInBackground(const std::function<void()>& done);

    Preferences& preferences_;
    const Receipts receipts_{preferences_.receiptsFolder()};
    HistoryList list_;
    // Of the stored bytes that are in this history, as last read or saved; absent when none were.
    std::optional<std::size_t> fingerprint_;
    bool isSaved_ = true;
    // The entries whose `undone` is not stored as it is here.
    std::vector<Uuid> undoneHere_;
    std::vector<UnsavedReceipt> unsavedReceipts_;
    DetachedTask<Outcome> saving_;
};

}  // namespace vesk

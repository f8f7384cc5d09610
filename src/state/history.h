// The history for Store: the past runs that the views show, loading and saving them, and their receipts. Lives on the
// main thread.
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
    /// Loads the history from these preferences, which must outlive this object. A large one is loaded on another
    /// thread, since a million moves take half a second: `list` has it once the event loop delivers it, and whatever
    /// else needs the entries waits for it.
    explicit History(Preferences& preferences);

    HistoryList& list() { return list_; }
    /// Waits for a history that is still being loaded. The list's signals may lead to this object's destruction.
    void finishLoading();
    /// Newest first.
    const std::vector<HistoryEntry>& entries() { return loaded().entries(); }
    /// The row of the entry with this id; absent if there is none.
    std::optional<std::size_t> rowOf(const Uuid& id);

    const Receipts& receipts() const { return receipts_; }
    /// Returns a function that collects what is known about the items of an entry. It reads the disk. It may be called
    /// on any thread, even after this object is gone.
    std::function<std::vector<TrashedItem>()> itemsOf(const HistoryEntry& entry) const;

    /// Adds an entry at the front.
    void add(HistoryEntry entry) { loaded().prepend(std::move(entry)); }
    /// Keeps a receipt that could not be stored for the next save.
    void keepReceipt(const Uuid& run, Receipt items) { unsavedReceipts_.push_back({run, std::move(items)}); }
    /// Sets whether the run with this id is undone. The views are notified only by `tellUndone`, so that it can be
    /// saved in between. Both do nothing if the run is no longer here.
    void noteUndone(const Uuid& id, bool undone);
    void tellUndone(const Uuid& id);

    /// Merges what somebody else has stored since the last read, drops all but the 50 newest entries, and stores the
    /// rest. If that fails, what was stored before stays.
    void save();
    /// The same on another thread, since storing a large history takes seconds; on this thread if no other can be
    /// started. Then calls `done` on this thread. Waits first for a save already running.
    void saveThen(const std::function<void()>& done);
    /// Waits until no save is running; each save's `done` has been called when this returns.
    void finishSaving();
    /// Whether the last save succeeded and every receipt is stored.
    bool isSaved() const { return isSaved_ && unsavedReceipts_.empty(); }

private:
    // A receipt that could not be stored so far.
    struct UnsavedReceipt {
        Uuid run;
        Receipt items;
    };

    // What was stored at the start, for use on any thread.
    struct Stored {
        std::optional<std::size_t> fingerprint;
        std::vector<HistoryEntry> entries;
    };

    static Stored load(const Preferences& preferences);
    void setLoaded(Stored stored);
    HistoryList& loaded();

    // A save's input and result, for use on any thread.
    struct Task;
    struct Outcome {
        bool isStored = false;
        // The fingerprint of the bytes that were found or stored.
        std::optional<std::size_t> fingerprint = {};
        // What somebody else has stored. If present, nothing was replaced.
        std::optional<std::vector<HistoryEntry>> others = {};
        // Whether there are too many entries to store.
        bool isTooLong = false;
    };

    static Outcome store(const Task& task);
    Task task();
    void prepareToSave();
    // Returns whether to try again.
    bool take(Outcome outcome);
    void tryInBackground(const std::function<void()>& done);

    Preferences& preferences_;
    const Receipts receipts_{preferences_.receiptsFolder()};
    HistoryList list_;
    // The fingerprint of the stored bytes that this history includes, as last read or saved; absent if there were none.
    std::optional<std::size_t> fingerprint_;
    bool isSaved_ = true;
    // The entries whose `undone` is not stored yet.
    std::vector<Uuid> undoneHere_;
    std::vector<UnsavedReceipt> unsavedReceipts_;
    DetachedTask<Stored> loading_;
    DetachedTask<Outcome> saving_;
};

}  // namespace vesk

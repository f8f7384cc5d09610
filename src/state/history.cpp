#include "state/history.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <utility>

#include "state/history_codec.h"
#include "state/running_work.h"

namespace vesk {

namespace {

constexpr std::string_view historyKey = "vesk.history";
constexpr std::size_t keptEntries = 50;

// Decoding that many bytes takes some 10 ms.
constexpr std::size_t mostBytesAtOnce = std::size_t{4} * 1024 * 1024;

std::size_t fingerprintOf(const std::string& bytes) {
    return std::hash<std::string>()(bytes);
}

// For work that ends by itself.
constexpr std::chrono::hours patience{24};

}  // namespace

History::History(Preferences& preferences) : preferences_(preferences) {
    const bool isLoading =
        preferences_.size(historyKey) > mostBytesAtOnce &&
        loading_.start(
            [preferences, token = takeWorkToken()](DetachedTask<Stored>::Control&) { return load(preferences); },
            [this](Stored stored) { setLoaded(std::move(stored)); });
    if (isLoading) {
        list_.beginLoading();
    } else {
        setLoaded(load(preferences_));
    }
}

History::Stored History::load(const Preferences& preferences) {
    StoredBytes stored = preferences.read(historyKey);
    if (!stored.bytes) {
        return {};
    }
    // Bytes that cannot be decoded stay stored until the next save.
    const std::size_t fingerprint = fingerprintOf(*stored.bytes);
    return {fingerprint, decodeHistory(*std::move(stored.bytes)).value_or(std::vector<HistoryEntry>())};
}

void History::setLoaded(Stored stored) {
    fingerprint_ = stored.fingerprint;
    list_.finishLoading(std::move(stored.entries));
}

void History::finishLoading() {
    loading_.finish(patience);
}

HistoryList& History::loaded() {
    finishLoading();
    return list_;
}

std::optional<std::size_t> History::rowOf(const Uuid& id) {
    const std::vector<HistoryEntry>& all = entries();
    const auto found = std::find_if(all.begin(), all.end(), [&](const HistoryEntry& entry) { return entry.id == id; });
    return found == all.end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - all.begin()));
}

std::function<std::vector<TrashedItem>()> History::itemsOf(const HistoryEntry& entry) const {
    const auto unsaved = std::find_if(unsavedReceipts_.begin(), unsavedReceipts_.end(),
                                      [&](const UnsavedReceipt& receipt) { return receipt.run == entry.id; });
    const std::optional<Receipt> known =
        unsaved == unsavedReceipts_.end() ? std::nullopt : std::optional(unsaved->items);
    return [run = entry.id, moves = entry.moves, cleaned = dateFromHistory(entry.date), known, receipts = receipts_] {
        return trashedItems(moves, cleaned, known ? *known : receipts.read(run, moves.size()));
    };
}

void History::noteUndone(const Uuid& id, bool undone) {
    if (const std::optional<std::size_t> row = rowOf(id)) {
        list_.noteUndone(*row, undone);
        undoneHere_.push_back(id);
    }
}

void History::tellUndone(const Uuid& id) {
    if (const std::optional<std::size_t> row = rowOf(id)) {
        list_.tellUndone(*row);
    }
}

struct History::Task {
    std::shared_ptr<const std::vector<HistoryEntry>> entries;
    Preferences preferences;
    Receipts receipts;
    // The fingerprint of the stored bytes that the entries include.
    std::optional<std::size_t> known;
};

History::Outcome History::store(const Task& task) {
    // What is stored may differ from what was read: another Vesk saved it (somebody removed the lock), a save was
    // reported as failed but took effect, or the disk could not be read at the start. Bytes that could never be read
    // are not replaced.
    Preferences preferences = task.preferences;
    StoredBytes stored = preferences.read(historyKey);
    if (stored.bytes) {
        const std::size_t found = fingerprintOf(*stored.bytes);
        if (found != task.known) {
            return {.fingerprint = found,
                    .others = decodeHistory(*std::move(stored.bytes)).value_or(std::vector<HistoryEntry>())};
        }
        stored.bytes.reset();
    } else if (stored.unreadable && !task.known) {
        return {};
    }
    const std::string text = encodeHistory(*task.entries);
    if (text.size() > Preferences::largestValue && task.entries->size() > 1) {
        return {.isTooLong = true};
    }
    if (!preferences.setData(historyKey, text)) {
        return {};
    }
    task.receipts.removeAllBut(*task.entries);
    return {.isStored = true, .fingerprint = fingerprintOf(text)};
}

History::Task History::task() {
    return {loaded().snapshot(), preferences_, receipts_, fingerprint_};
}

void History::prepareToSave() {
    isSaved_ = false;
    loaded().trim(keptEntries);
    std::erase_if(unsavedReceipts_,
                  [&](const UnsavedReceipt& receipt) { return receipts_.write(receipt.run, receipt.items); });
}

bool History::take(Outcome outcome) {
    if (outcome.fingerprint) {
        fingerprint_ = outcome.fingerprint;
    }
    if (outcome.others) {
        if (entries().empty()) {
            list_.append(*std::move(outcome.others));
        } else {
            list_.merge(*std::move(outcome.others), undoneHere_, keptEntries);
        }
        list_.trim(keptEntries);
        return true;
    }
    if (outcome.isTooLong) {
        list_.trim(entries().size() - 1);
        return true;
    }
    isSaved_ = outcome.isStored;
    if (isSaved_) {
        undoneHere_.clear();
    }
    return false;
}

void History::save() {
    finishSaving();
    prepareToSave();
    while (take(store(task()))) {
    }
}

void History::saveThen(const std::function<void()>& done) {
    finishSaving();
    prepareToSave();
    tryInBackground(done);
}

void History::tryInBackground(const std::function<void()>& done) {
    const bool isStarted = saving_.start(
        // Releases the entries before the outcome is delivered; otherwise the next change would have to copy them.
        [task = std::make_shared<Task>(task()), token = takeWorkToken()](DetachedTask<Outcome>::Control&) {
            const Task taken = std::move(*task);
            return store(taken);
        },
        [this, done](Outcome outcome) {
            if (take(std::move(outcome))) {
                tryInBackground(done);
            } else {
                done();
            }
        });
    if (!isStarted) {
        save();
        done();
    }
}

void History::finishSaving() {
    while (saving_.isRunning()) {
        saving_.finish(patience);
    }
}

}  // namespace vesk

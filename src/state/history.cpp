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

std::size_t fingerprintOf(const std::string& bytes) {
    return std::hash<std::string>()(bytes);
}

}  // namespace

History::History(Preferences& preferences) : preferences_(preferences) {
    // What cannot be decoded stays stored until the next save.
    StoredBytes stored = preferences_.read(historyKey);
    if (stored.bytes) {
        fingerprint_ = fingerprintOf(*stored.bytes);
        list_.append(decodeHistory(*std::move(stored.bytes)).value_or(std::vector<HistoryEntry>()));
    }
}

std::optional<std::size_t> History::rowOf(const Uuid& id) const {
    const auto found =
        std::find_if(entries().begin(), entries().end(), [&](const HistoryEntry& entry) { return entry.id == id; });
    return found == entries().end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - entries().begin()));
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
    // Of the stored bytes that are in the entries.
    std::optional<std::size_t> known;
};

History::Outcome History::store(const Task& task) {
    // Something else may be stored by now than was read: by another Vesk, whose lock somebody removed, by a save that
    // said it had failed, or because the disk did not yield it at the start. As long as nobody could read it, nothing
    // replaces it.
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

History::Task History::task() const {
    return {list_.snapshot(), preferences_, receipts_, fingerprint_};
}

void History::prepareToSave() {
    isSaved_ = false;
    list_.trim(keptEntries);
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
        // The entries are let go before the outcome is told, so that whoever changes them next need not copy them.
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
    constexpr std::chrono::hours patience{24};
    while (saving_.isRunning()) {
        saving_.finish(patience);
    }
}

}  // namespace vesk

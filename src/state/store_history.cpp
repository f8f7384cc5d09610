// The history of Store and its undo, step by step.

#include <algorithm>
#include <functional>
#include <string>
#include <utility>

#include "state/history_codec.h"
#include "state/restore_worker.h"
#include "state/running_work.h"
#include "state/store.h"

namespace vesk {

namespace {

constexpr std::string_view historyKey = "vesk.history";
constexpr std::size_t keptEntries = 50;

std::string undoNotice(std::size_t restored, std::size_t wanted) {
    if (restored == wanted) {
        return "All " + std::to_string(restored) + " items are back where they were.";
    }
    return "Put back " + std::to_string(restored) + " of " + std::to_string(wanted) +
           " items. The rest are no longer in the Trash (maybe it was emptied).";
}

}  // namespace

bool Store::loadHistory() {
    StoredBytes stored = preferences_.read(historyKey);
    if (!stored.bytes) {
        return !stored.unreadable;
    }
    const std::size_t fingerprint = std::hash<std::string>()(*stored.bytes);
    if (fingerprint == knownHistory_) {
        return true;
    }
    // What cannot be decoded stays stored until the next save.
    std::vector<HistoryEntry> entries = decodeHistory(*std::move(stored.bytes)).value_or(std::vector<HistoryEntry>());
    if (history().empty()) {
        historyList_.append(std::move(entries));
    } else {
        historyList_.merge(std::move(entries), undoneHere_, keptEntries);
    }
    knownHistory_ = fingerprint;
    return true;
}

void Store::saveHistory() {
    // Something else may be stored by now than was read: by another Vesk, whose lock somebody removed, by a save that
    // said it had failed, or because the disk did not yield it at the start. As long as nobody could read it, nothing
    // replaces it.
    const bool replaceable = loadHistory() || knownHistory_;
    historyList_.trim(keptEntries);
    std::erase_if(unsavedReceipts_,
                  [&](const UnsavedReceipt& receipt) { return receipts_.write(receipt.run, receipt.items); });
    std::string text = encodeHistory(history());
    while (text.size() > Preferences::largestValue && history().size() > 1) {
        historyList_.trim(history().size() - 1);
        text = encodeHistory(history());
    }
    historyUnsaved_ = !replaceable || !preferences_.setData(historyKey, text);
    if (!historyUnsaved_) {
        knownHistory_ = std::hash<std::string>()(text);
        undoneHere_.clear();
        receipts_.removeAllBut(history());
    }
}

std::function<std::vector<TrashedItem>()> Store::itemsOf(const HistoryEntry& entry) const {
    const auto unsaved = std::find_if(unsavedReceipts_.begin(), unsavedReceipts_.end(),
                                      [&](const UnsavedReceipt& receipt) { return receipt.run == entry.id; });
    const std::optional<Receipt> known =
        unsaved == unsavedReceipts_.end() ? std::nullopt : std::optional(unsaved->items);
    return [run = entry.id, moves = entry.moves, cleaned = dateFromHistory(entry.date), known, receipts = receipts_] {
        return trashedItems(moves, cleaned, known ? *known : receipts.read(run, moves.size()));
    };
}

std::optional<std::size_t> Store::historyRow(const Uuid& id) const {
    const auto found =
        std::find_if(history().begin(), history().end(), [&](const HistoryEntry& entry) { return entry.id == id; });
    return found == history().end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - history().begin()));
}

void Store::undo(const QString& id) {
    if (const std::optional<Uuid> read = Uuid::parse(id.toStdString())) {
        undo(*read);
    }
}

void Store::undo(const Uuid& id) {
    const std::optional<std::size_t> row = historyRow(id);
    if (!row || busy()) {
        return;
    }
    // Whether the entry was undone before is not asked: a second undo finds nothing left to put back.
    const HistoryEntry& entry = history()[*row];
    setCleaning(true);
    restoreTask_.start(
        [items = itemsOf(entry), token = takeWorkToken()](DetachedTask<std::size_t>::Control& control) {
            return restoreItems(items(), [&] { return control.stopRequested(); });
        },
        [this, id, wanted = entry.moves.size()](std::size_t restored) { finishUndo(id, restored, wanted); });
}

void Store::finishUndo(const Uuid& id, std::size_t restored, std::size_t wanted) {
    setCleaning(false);
    if (const std::optional<std::size_t> row = historyRow(id)) {
        historyList_.setUndone(*row, restored == wanted);
        undoneHere_.push_back(id);
    }
    saveHistory();
    setNotice(undoNotice(restored, wanted));
    rescan();
}

}  // namespace vesk

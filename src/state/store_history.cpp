// The history of Store and its undo, step by step.

#include <algorithm>
#include <string>
#include <utility>

#include "state/history_codec.h"
#include "state/restore_worker.h"
#include "state/store.h"
#include "state/work_left.h"

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

void Store::loadHistory() {
    const std::optional<std::string> stored = preferences_.data(historyKey);
    if (!stored) {
        return;
    }
    // What cannot be read stays stored until the next save.
    historyList_.load(decodeHistory(*stored).value_or(std::vector<HistoryEntry>()));
}

void Store::saveHistory() {
    historyList_.trim(keptEntries);
    preferences_.setData(historyKey, encodeHistory(history()));
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
    const std::vector<HistoryEntry::Move> moves = history()[*row].moves;
    setCleaning(true);
    restoreTask_.start(
        [moves, token = takeWorkToken()](DetachedTask<std::size_t>::Control& control) {
            return restoreMoves(moves, [&] { return control.stopRequested(); });
        },
        [this, id, wanted = moves.size()](std::size_t restored) { finishUndo(id, restored, wanted); });
}

void Store::finishUndo(const Uuid& id, std::size_t restored, std::size_t wanted) {
    setCleaning(false);
    if (const std::optional<std::size_t> row = historyRow(id)) {
        historyList_.setUndone(*row, restored == wanted);
    }
    saveHistory();
    setNotice(undoNotice(restored, wanted));
    rescan();
}

}  // namespace vesk

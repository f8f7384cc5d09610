// The undo of Store, step by step.

#include <string>
#include <utility>

#include "state/restore_worker.h"
#include "state/running_work.h"
#include "state/store.h"

namespace vesk {

namespace {

std::string undoNotice(std::size_t restored, std::size_t wanted) {
    if (restored == wanted) {
        return "All " + std::to_string(restored) + " items are back where they were.";
    }
    return "Put back " + std::to_string(restored) + " of " + std::to_string(wanted) +
           " items. The rest are no longer in the Trash (maybe it was emptied).";
}

}  // namespace

void Store::undo(const QString& id) {
    if (const std::optional<Uuid> read = Uuid::parse(id.toStdString())) {
        undo(*read);
    }
}

void Store::undo(const Uuid& id) {
    const std::optional<std::size_t> row = history_.rowOf(id);
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
    history_.setUndone(id, restored == wanted);
    saveHistory();
    setNotice(undoNotice(restored, wanted));
    rescan();
}

}  // namespace vesk

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
    inTurn([&] { history_.finishLoading(); }, [&] { startUndo(id); });
}

void Store::startUndo(const Uuid& id) {
    const std::optional<std::size_t> row = history_.rowOf(id);
    if (!row || busy()) {
        return;
    }
    // No check whether the entry is already undone: a second undo finds nothing to restore.
    const std::size_t wanted = history()[*row].moves.size();
    auto items = itemsOf(history()[*row]);
    inTurn([&] { setCleaning(true); },
           [&] {
               const bool isStarted = restoreTask_.start(
                   [items = std::move(items), token = takeWorkToken()](DetachedTask<std::size_t>::Control& control) {
                       return restoreItems(items(), [&] { return control.stopRequested(); });
                   },
                   [this, id, wanted](std::size_t restored) { finishUndo(id, restored, wanted); });
               if (!isStarted) {
                   failToStart("The undo");
               }
           });
}

void Store::finishUndo(const Uuid& id, std::size_t restored, std::size_t wanted) {
    // Saved while the store is still busy; the views are notified afterwards.
    history_.noteUndone(id, restored == wanted);
    history_.saveThen([this, id, notice = undoNotice(restored, wanted)] {
        inTurn([&] { setCleaning(false); }, [&] { history_.tellUndone(id); }, [&] { setNotice(notice); },
               [&] { rescan(); });
    });
}

}  // namespace vesk

// The clean of Store, step by step.

#include <QTimer>
#include <chrono>
#include <memory>
#include <numeric>
#include <utility>

#include "core/checked_sum.h"
#include "platform/trash/trash.h"
#include "state/cleaning_worker.h"
#include "state/running_work.h"
#include "state/store.h"

namespace vesk {

namespace {

// How long a quitting program waits for the current step; it should take no more than two seconds in all.
constexpr std::chrono::milliseconds quitPatience{1200};

std::int64_t freedBytes(const std::vector<HistoryEntry::Move>& moves) {
    std::int64_t freed = 0;
    for (const HistoryEntry::Move& move : moves) {
        checkedAdd(freed, move.size);
    }
    return freed;
}

// Restores an item that a program opened while it was moved.
std::optional<PlatformError> restoreOpened(const TrashedItem& item) {
    std::optional<PlatformError> failure = restoreItem(item);
    if (!failure && syncMoves({item.place})) {
        forgetReturned(item);
    }
    return failure;
}

}  // namespace

void Store::performClean() {
    if (busy()) {
        return;
    }
    // Copied now: a handler of the signals below may change the cards or the switch.
    std::vector<SeenItem> workList;
    std::vector<std::string> snapshotIDs;
    std::vector<std::string> titles;
    for (const Card& card : cards()) {
        if (!card.selected) {
            continue;
        }
        titles.push_back(card.title);
        snapshotIDs.insert(snapshotIDs.end(), card.snapshotIDs.begin(), card.snapshotIDs.end());
        for (const Entry& entry : card.entries) {
            workList.push_back({entry.url, {}, {}, entry.size});
        }
    }
    if (titles.empty()) {
        return;
    }
    const bool isPreview = previewOnly_;
    cleaningTitles_ = std::move(titles);
    inTurn([&] { setCleaning(true); },
           [&] {
               // Computed in a real run too: if the total overflows, the program ends before anything is moved.
               const std::int64_t total =
                   std::accumulate(workList.begin(), workList.end(), std::int64_t{0},
                                   [](std::int64_t sum, const SeenItem& item) { return checkedSum(sum, item.size); });
               if (isPreview) {
                   previewBytes_ = total;
                   previewPause_->start(sources_.previewPause);
               } else {
                   startClean(std::move(workList), std::move(snapshotIDs));
               }
           });
}

void Store::startClean(std::vector<SeenItem> items, std::vector<std::string> snapshotIDs) {
    const auto workList = std::make_shared<std::vector<SeenItem>>(std::move(items));
    cleaningRun_ = Uuid::random();
    cleaningLog_ = std::make_shared<CleaningLog>();
    const bool isStarted = cleaningTask_.start(
        [workList, seen = seenItems_, snapshotIDs = std::move(snapshotIDs), log = cleaningLog_, run = cleaningRun_,
         receipts = history_.receipts(), notes = preferences_.recordNotes(), runTool = sources_.runTool,
         lookAtUse = sources_.lookAtUse, watchesOpening = sources_.watchesOpening,
         token = takeWorkToken()](DetachedTask<std::monostate>::Control& control) {
            for (SeenItem& item : *workList) {
                seen->tell(item);
            }
            OpenWatch watch;
            std::optional<TrashBatch> batch(std::in_place, notes,
                                            [&](const auto& item) { return watch.noticed(item); });
            CleaningTools tools;
            tools.prepare = [&](const SeenItem* first, const SeenItem* last) { batch->record(first, last); };
            tools.moveToTrash = [&](const SeenItem& item) { return batch->move(item); };
            tools.lookAtUse = lookAtUse;
            tools.openWatch = watchesOpening ? &watch : nullptr;
            tools.restore = restoreOpened;
            tools.settle = [&](const std::vector<std::filesystem::path>& trashed) {
                batch.reset();
                syncMoves(trashed);
            };
            tools.runTool = runTool;
            tools.stopRequested = [&] { return control.stopRequested(); };
            runCleaning(*workList, snapshotIDs, tools, *log);
            // Stored before the history mentions the run: an undo needs it to recognise the items.
            log->storeReceipt(run, receipts);
            return std::monostate();
        },
        [this](std::monostate) { finishClean(); });
    if (!isStarted) {
        cleaningLog_.reset();
        failToStart("The cleanup");
    }
}

void Store::failToStart(const char* what) {
    const std::string notice =
        std::string(what) + " could not be started: the system is too busy. Nothing was changed.";
    inTurn([&] { setCleaning(false); }, [&] { setNotice(notice); });
}

void Store::finishClean() {
    const std::shared_ptr<CleaningLog> log = std::exchange(cleaningLog_, nullptr);
    log->storeReceipt(cleaningRun_, history_.receipts());
    CleaningResult result = log->takeResult();
    HistoryEntry entry;
    entry.id = cleaningRun_;
    entry.date = historyDate(now());
    entry.bytes = freedBytes(result.moves);
    entry.titles = std::exchange(cleaningTitles_, {});
    keepKnownPlaces(result);
    entry.moves = std::move(result.moves);
    entry.snapshotsRemoved = result.snapshotsRemoved;
    if (!entry.moves.empty() && !log->isReceiptStored()) {
        history_.keepReceipt(entry.id, std::move(result.receipt));
    }
    recordClean(std::move(entry), result.failures);
}

void Store::finishPreview() {
    HistoryEntry entry;
    entry.date = historyDate(now());
    entry.bytes = previewBytes_;
    entry.preview = true;
    entry.titles = std::exchange(cleaningTitles_, {});
    recordClean(std::move(entry), 0);
}

void Store::recordClean(HistoryEntry entry, std::int64_t failures) {
    Celebration celebration;
    celebration.bytes = entry.bytes;
    celebration.preview = entry.preview;
    celebration.snapshots = entry.snapshotsRemoved;
    celebration.failures = failures;

    inTurn([&] { history_.finishLoading(); }, [&] { history_.add(std::move(entry)); },
           [&] {
               history_.saveThen([this, celebration] {
                   inTurn([&] { setCleaning(false); }, [&] { setCelebration(celebration); },
                          [&] {
                              if (!celebration.preview) {
                                  rescan();
                              }
                          });
               });
           });
}

void Store::rescan() {
    if (!finishing_) {
        scan();
    }
}

void Store::stopTelling() {
    for (QObject* const teller :
         {static_cast<QObject*>(this), static_cast<QObject*>(&cardList_), static_cast<QObject*>(historyList())}) {
        teller->blockSignals(true);
    }
}

void Store::finish() {
    finishing_ = true;
    if (previewPause_->isActive()) {
        previewPause_->stop();
        finishPreview();
    }
    cleaningTask_.finish(quitPatience);
    if (cleaningLog_) {
        finishClean();  // the worker hangs in a step; the log has the steps before it
    }
    restoreTask_.finish(quitPatience);
    history_.finishSaving();
    if (!history_.isSaved()) {
        saveHistory();
    }
}

}  // namespace vesk

// The clean of Store, step by step.

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>
#include <utility>

#include "core/checked_sum.h"
#include "platform/trash/trash.h"
#include "state/cleaning_worker.h"
#include "state/running_work.h"
#include "state/store.h"

namespace vesk {

namespace {

// A preview that ended at once would not look as if anything had been worked out.
constexpr std::chrono::milliseconds previewPause{900};
// How long a quitting program waits for the step under way, of the two seconds that it may take in all.
constexpr std::chrono::milliseconds quitPatience{1200};

std::int64_t freedBytes(const std::vector<HistoryEntry::Move>& moves) {
    std::int64_t freed = 0;
    for (const HistoryEntry::Move& move : moves) {
        checkedAdd(freed, move.size);
    }
    return freed;
}

std::vector<std::string> titlesOf(const std::vector<Card>& cards) {
    std::vector<std::string> titles;
    titles.reserve(cards.size());
    std::transform(cards.begin(), cards.end(), std::back_inserter(titles), [](const Card& card) { return card.title; });
    return titles;
}

std::vector<std::string> snapshotIDsOf(const std::vector<Card>& cards) {
    std::vector<std::string> ids;
    for (const Card& card : cards) {
        ids.insert(ids.end(), card.snapshotIDs.begin(), card.snapshotIDs.end());
    }
    return ids;
}

// An item that somebody opened while it was moved.
std::optional<PlatformError> putBackOpened(const TrashedItem& item) {
    std::optional<PlatformError> failure = restoreItem(item);
    if (!failure && syncMoves({item.place})) {
        forgetReturned(item);
    }
    return failure;
}

}  // namespace

void Store::performClean() {
    const std::vector<Card> selected = selectedCards();
    if (selected.empty() || busy()) {
        return;
    }
    cleaningTitles_ = titlesOf(selected);
    const std::vector<SeenItem> workList = workListOf(selected);
    const std::vector<std::string> snapshotIDs = snapshotIDsOf(selected);
    setCleaning(true);
    if (previewOnly_) {
        previewBytes_ = selectedBytes();
        previewPause_->start(previewPause);
        return;
    }
    cleaningRun_ = Uuid::random();
    cleaningLog_ = std::make_shared<CleaningLog>();
    cleaningTask_.start(
        [workList, snapshotIDs, log = cleaningLog_, run = cleaningRun_, receipts = history_.receipts(),
         runTool = sources_.runTool, lookAtUse = sources_.lookAtUse,
         token = takeWorkToken()](DetachedTask<std::monostate>::Control& control) {
            CleaningTools tools;
            tools.moveToTrash = moveToTrash;
            tools.lookAtUse = lookAtUse;
            tools.putBack = putBackOpened;
            tools.settle = syncMoves;
            tools.runTool = runTool;
            tools.stopRequested = [&] { return control.stopRequested(); };
            runCleaning(workList, snapshotIDs, tools, *log);
            // Before the history tells of the run, so that its items can be told from others as soon as they can be put
            // back.
            log->storeReceipt(run, receipts);
            return std::monostate();
        },
        [this](std::monostate) { finishClean(); });
}

std::vector<SeenItem> Store::workListOf(const std::vector<Card>& cards) const {
    std::vector<SeenItem> workList;
    for (const Card& card : cards) {
        for (const Entry& entry : card.entries) {
            workList.push_back(seenItems_.itemAt(entry.url));
            workList.back().size = entry.size;
        }
    }
    return workList;
}

void Store::finishClean() {
    const std::shared_ptr<CleaningLog> log = std::exchange(cleaningLog_, nullptr);
    log->storeReceipt(cleaningRun_, history_.receipts());
    CleaningResult result = log->result();
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
    rescan();
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

    history_.add(std::move(entry));
    saveHistory();
    setCleaning(false);
    setCelebration(celebration);
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
        finishClean();  // the worker hangs in a step; those before it are in its log
    }
    restoreTask_.finish(quitPatience);
    if (!history_.isSaved()) {
        saveHistory();
    }
}

}  // namespace vesk

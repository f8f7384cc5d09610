// The clean of Store, step by step.

#include <QTimer>
#include <algorithm>
#include <chrono>
#include <iterator>
#include <memory>
#include <utility>

#include "core/checked_sum.h"
#include "platform/trash/trash.h"
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

// Before the history tells of the run, so that its items can be told from others as soon as they can be put back.
void storeReceipt(CleaningLog& log, const Uuid& run, const Receipts& receipts) {
    if (!log.claimReceipt()) {
        return;
    }
    CleaningResult result = log.result();
    keepKnownPlaces(result);
    if (!result.moves.empty() && receipts.write(run, result.receipt)) {
        log.setReceiptStored();
    }
}

}  // namespace

void Store::performClean() {
    using Log = std::shared_ptr<CleaningLog>;
    const std::vector<Card> selected = selectedCards();
    if (selected.empty() || busy()) {
        return;
    }
    cleaningTitles_ = titlesOf(selected);
    const std::vector<CleaningItem> workList = workListOf(selected);
    const std::vector<std::string> snapshotIDs = snapshotIDsOf(selected);
    setCleaning(true);
    if (previewOnly_) {
        previewBytes_ = selectedBytes();
        previewPause_->start(previewPause);
        return;
    }
    cleaningRun_ = Uuid::random();
    cleaningTask_.start(
        [workList, snapshotIDs, run = cleaningRun_, receipts = receipts_, runTool = sources_.runTool,
         token = takeWorkToken()](DetachedTask<Log>::Control& control) {
            Log log = std::make_shared<CleaningLog>();
            control.keep(log);
            CleaningTools tools;
            tools.moveToTrash = moveToTrash;
            tools.settle = syncMoves;
            tools.runTool = runTool;
            tools.stopRequested = [&] { return control.stopRequested(); };
            tools.stepDone = [&](const CleaningResult& soFar) { log->update(soFar); };
            runCleaning(workList, snapshotIDs, tools);
            storeReceipt(*log, run, receipts);
            return log;
        },
        [this](const Log& log) { finishClean(*log); });
}

std::vector<std::string> Store::titlesOf(const std::vector<Card>& cards) {
    std::vector<std::string> titles;
    titles.reserve(cards.size());
    std::transform(cards.begin(), cards.end(), std::back_inserter(titles), [](const Card& card) { return card.title; });
    return titles;
}

std::vector<CleaningItem> Store::workListOf(const std::vector<Card>& cards) const {
    std::vector<CleaningItem> workList;
    for (const Card& card : cards) {
        for (const Entry& entry : card.entries) {
            workList.push_back({seenItems_.itemAt(entry.url), entry.size});
        }
    }
    return workList;
}

std::vector<std::string> Store::snapshotIDsOf(const std::vector<Card>& cards) {
    std::vector<std::string> ids;
    for (const Card& card : cards) {
        ids.insert(ids.end(), card.snapshotIDs.begin(), card.snapshotIDs.end());
    }
    return ids;
}

void Store::finishClean(CleaningLog& log) {
    storeReceipt(log, cleaningRun_, receipts_);
    CleaningResult result = log.result();
    HistoryEntry entry;
    entry.id = cleaningRun_;
    entry.date = historyDate(now());
    entry.bytes = freedBytes(result.moves);
    entry.titles = std::exchange(cleaningTitles_, {});
    keepKnownPlaces(result);
    entry.moves = std::move(result.moves);
    entry.snapshotsRemoved = result.snapshotsRemoved;
    if (!entry.moves.empty() && !log.isReceiptStored()) {
        unsavedReceipts_.push_back({entry.id, std::move(result.receipt)});
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

    historyList_.prepend(std::move(entry));
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
         {static_cast<QObject*>(this), static_cast<QObject*>(&cardList_), static_cast<QObject*>(&historyList_)}) {
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
    restoreTask_.finish(quitPatience);
    if (historyUnsaved_ || !unsavedReceipts_.empty()) {
        saveHistory();
    }
}

}  // namespace vesk

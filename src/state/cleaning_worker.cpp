#include "state/cleaning_worker.h"

#include <cstddef>
#include <utility>

#include "platform/world.h"
#include "rules/backup_tool.h"

namespace vesk {

void keepKnownPlaces(CleaningResult& result) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < result.moves.size(); ++i) {
        if (!result.moves[i].trashed.empty()) {
            std::swap(result.moves[kept], result.moves[i]);
            std::swap(result.receipt[kept], result.receipt[i]);
            ++kept;
        }
    }
    result.moves.resize(kept);
    result.receipt.resize(kept);
}

namespace {

// Returns false when it was stopped before the last item.
bool moveItems(const std::vector<CleaningItem>& workList, const CleaningTools& tools, CleaningResult& result) {
    std::vector<std::filesystem::path> trashed;
    bool stopped = false;
    for (const CleaningItem& work : workList) {
        stopped = tools.stopRequested();
        if (stopped) {
            break;
        }
        const TrashOutcome outcome = tools.moveToTrash(work.item);
        if (outcome.error) {
            ++result.failures;
        } else {
            result.moves.push_back({work.item.path.string(), outcome.place.string(), work.size});
            result.receipt.push_back(outcome.identity);
            trashed.push_back(outcome.place);
        }
        tools.stepDone(result);
    }
    tools.settle(trashed);
    return !stopped;
}

}  // namespace

CleaningResult runCleaning(const std::vector<CleaningItem>& workList, const std::vector<std::string>& snapshotIDs,
                           const CleaningTools& tools) {
    CleaningResult result;
    if (!moveItems(workList, tools, result)) {
        return result;
    }
    const std::string tool = world().rooted(backupTool).string();
    for (const std::string& id : snapshotIDs) {
        if (tools.stopRequested()) {
            return result;
        }
        if (tools.runTool(tool, {"deletelocalsnapshots", id}) == 0) {
            ++result.snapshotsRemoved;
        } else {
            ++result.failures;
        }
        tools.stepDone(result);
    }
    return result;
}

void CleaningLog::update(const CleaningResult& soFar) {
    const std::lock_guard guard(lock_);
    const auto known = static_cast<std::ptrdiff_t>(result_.moves.size());
    result_.moves.insert(result_.moves.end(), soFar.moves.begin() + known, soFar.moves.end());
    result_.receipt.insert(result_.receipt.end(), soFar.receipt.begin() + known, soFar.receipt.end());
    result_.failures = soFar.failures;
    result_.snapshotsRemoved = soFar.snapshotsRemoved;
}

CleaningResult CleaningLog::result() const {
    const std::lock_guard guard(lock_);
    return result_;
}

bool CleaningLog::claimReceipt() {
    const std::lock_guard guard(lock_);
    return !std::exchange(isReceiptClaimed_, true);
}

void CleaningLog::setReceiptStored() {
    const std::lock_guard guard(lock_);
    isReceiptStored_ = true;
}

bool CleaningLog::isReceiptStored() const {
    const std::lock_guard guard(lock_);
    return isReceiptStored_;
}

}  // namespace vesk

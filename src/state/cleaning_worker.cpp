#include "state/cleaning_worker.h"

#include <algorithm>

#include "platform/world.h"
#include "rules/backup_tool.h"

namespace vesk {

namespace {

// Returns false when it was stopped before the last item.
bool moveItems(const std::vector<SeenItem>& workList, const CleaningTools& tools, CleaningLog& log) {
    std::vector<std::filesystem::path> trashed;
    bool stopped = false;
    for (std::size_t i = 0; i < workList.size(); ++i) {
        const SeenItem& item = workList[i];
        stopped = tools.stopRequested();
        if (stopped) {
            break;
        }
        if (i % TrashBatch::size == 0) {
            const std::size_t end = std::min(workList.size(), i + TrashBatch::size);
            tools.prepare(workList.data() + i, workList.data() + end);
        }
        const TrashOutcome outcome = tools.moveToTrash(item);
        log.addItem(item, outcome);
        if (!outcome.error) {
            trashed.push_back(outcome.place);
        }
    }
    tools.settle(trashed);
    return !stopped;
}

}  // namespace

void runCleaning(const std::vector<SeenItem>& workList, const std::vector<std::string>& snapshotIDs,
                 const CleaningTools& tools, CleaningLog& log) {
    if (!moveItems(workList, tools, log)) {
        return;
    }
    const std::string tool = world().rooted(backupTool).string();
    for (const std::string& id : snapshotIDs) {
        if (tools.stopRequested()) {
            return;
        }
        log.addSnapshot(tools.runTool(tool, {"deletelocalsnapshots", id}) == 0);
    }
}

}  // namespace vesk

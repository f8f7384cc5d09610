#include "state/cleaning_worker.h"

#include "platform/world.h"
#include "rules/backup_tool.h"

namespace vesk {

CleaningResult runCleaning(const std::vector<CleaningItem>& workList, const std::vector<std::string>& snapshotIDs,
                           const CleaningTools& tools) {
    CleaningResult result;
    for (const CleaningItem& work : workList) {
        if (tools.stopRequested()) {
            return result;
        }
        const TrashOutcome outcome = tools.moveToTrash(work.item);
        if (outcome.error) {
            ++result.failures;
        } else {
            result.moves.push_back({work.item.path.string(), outcome.place.string(), work.size});
        }
    }
    tools.movesMade(result);

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
    }
    return result;
}

}  // namespace vesk

#include "state/cleaning_worker.h"

#include <algorithm>
#include <cerrno>
#include <span>

#include "platform/world.h"
#include "rules/backup_tool.h"
#include "state/use_guard.h"

namespace vesk {

namespace {

// Returns false if it was stopped before the last item.
bool moveItems(const std::vector<SeenItem>& workList, const CleaningTools& tools, CleaningLog& log) {
    // A group may begin with a look at all processes, which takes as long as dozens of moves.
    constexpr std::size_t watchedAtOnce = 8 * TrashBatch::size;
    const auto group = [&](std::size_t first) {
        const std::size_t start = std::min(first, workList.size());
        return std::span(workList).subspan(start, std::min(watchedAtOnce, workList.size() - start));
    };
    UseGuard guard(tools, log);
    bool stopped = false;
    for (std::size_t i = 0; i < workList.size(); ++i) {
        const SeenItem& item = workList[i];
        stopped = tools.stopRequested();
        if (stopped) {
            break;
        }
        if (i % watchedAtOnce == 0) {
            guard.expect(group(i), group(i + watchedAtOnce));
        }
        if (i % TrashBatch::size == 0) {
            const std::size_t end = std::min(workList.size(), i + TrashBatch::size);
            tools.prepare(workList.data() + i, workList.data() + end);
        }
        const TrashOutcome outcome =
            guard.isInUse(item.path) ? TrashOutcome{posixError(EBUSY), {}, {}} : tools.moveToTrash(item);
        log.addItem(item, outcome);
        if (!outcome.error) {
            guard.watch(item, outcome);
        }
    }
    guard.finish();
    tools.settle(guard.trashed());
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

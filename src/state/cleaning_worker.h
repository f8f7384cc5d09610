// The part of a clean that touches the disk. Runs off the main thread, on copies, and knows nothing of Store.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/system/open_files.h"
#include "platform/trash/trash.h"
#include "state/cleaning_log.h"

namespace vesk {

/// What the worker acts with.
struct CleaningTools {
    /// Told of a part of the work list before its items are moved: those from the first to before the last.
    std::function<void(const SeenItem* first, const SeenItem* last)> prepare = [](const SeenItem*, const SeenItem*) {};
    std::function<TrashOutcome(const SeenItem&)> moveToTrash;
    /// Looks at what programs have in use at the moment. By default nothing is.
    std::function<OpenFiles()> lookAtUse = [] { return OpenFiles(std::vector<UsedFile>()); };
    /// Moves an item back from the Trash to its place. Returns why it is not there; absent when it is.
    std::function<std::optional<PlatformError>(const TrashedItem&)> putBack;
    /// Told, once no more items come, where all those lie that were moved: they have to be on the disk before anything
    /// is stored that tells of them.
    std::function<void(const std::vector<std::filesystem::path>& trashed)> settle =
        [](const std::vector<std::filesystem::path>&) {};
    /// Runs a program and returns its exit status.
    std::function<int(const std::string& path, const std::vector<std::string>& arguments)> runTool;
    /// Asked before each step: whether to stop there. What was not tried then counts neither as done nor as failed.
    std::function<bool()> stopRequested = [] { return false; };
};

/// Moves the items to the Trash one by one, but for those that a program has in use, then deletes the snapshots one by
/// one. Nothing is tried twice. Each step is in the log before the next begins, which may hang.
void runCleaning(const std::vector<SeenItem>& workList, const std::vector<std::string>& snapshotIDs,
                 const CleaningTools& tools, CleaningLog& log);

}  // namespace vesk

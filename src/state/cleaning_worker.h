// The part of a clean that uses the disk. Runs off the main thread, on copies, and does not use Store.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/system/open_files.h"
#include "platform/system/open_watch.h"
#include "platform/trash/trash.h"
#include "state/cleaning_log.h"

namespace vesk {

/// What the worker calls. All are called on its thread.
struct CleaningTools {
    /// Called with the next batch of the work list before its items are moved: [first, last).
    std::function<void(const SeenItem* first, const SeenItem* last)> prepare = [](const SeenItem*, const SeenItem*) {};
    std::function<TrashOutcome(const SeenItem&)> moveToTrash;
    /// Returns the files that programs have in use now; by default, none.
    std::function<OpenFiles()> lookAtUse = [] { return OpenFiles(std::vector<UsedFile>()); };
    /// Notices what programs open after a look; may be null.
    OpenWatch* openWatch = nullptr;
    /// Restores an item from the Trash. Returns the reason if that failed, else absent.
    std::function<std::optional<PlatformError>(const TrashedItem&)> restore;
    /// Called after the last move with the places of the items in the Trash, as far as they are known. Makes sure that
    /// the moves are on the disk before anything that mentions them is stored.
    std::function<void(const std::vector<std::filesystem::path>& trashed)> settle =
        [](const std::vector<std::filesystem::path>&) {};
    /// Runs a program and returns its exit status.
    std::function<int(const std::string& path, const std::vector<std::string>& arguments)> runTool;
    /// Called before each step; true to stop there. Steps not tried count neither as done nor as failed.
    std::function<bool()> stopRequested = [] { return false; };
};

/// Moves the items to the Trash one by one, except those that a program has in use, then deletes the snapshots one by
/// one. Tries nothing twice. Logs each step before starting the next, which may hang.
void runCleaning(const std::vector<SeenItem>& workList, const std::vector<std::string>& snapshotIDs,
                 const CleaningTools& tools, CleaningLog& log);

}  // namespace vesk

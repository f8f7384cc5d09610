// Keeps a clean from taking what a program has in use: asks before each item moves, and again soon after, since who
// opened it in between would go on writing where nobody looks. Used by the worker of a clean, on its thread.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <vector>

#include "platform/system/open_files.h"
#include "platform/trash/trash.h"
#include "state/cleaning_log.h"
#include "state/cleaning_worker.h"

namespace vesk {

class UseGuard {
public:
    UseGuard(const CleaningTools& tools, CleaningLog& log) : tools_(tools), log_(log) {}

    /// Whether a program has the item in use, by a look that is new or at most a second old.
    bool isInUse(const std::filesystem::path& item);

    /// Notes an item that the Trash has taken.
    void watch(const SeenItem& item, const TrashOutcome& outcome);

    /// Looks a last time at those that were moved since the last look.
    void finish();

    /// Where those lie in the Trash that stay there.
    const std::vector<std::filesystem::path>& trashed() const { return trashed_; }

private:
    using Clock = std::chrono::steady_clock;

    void lookAgain();
    // What somebody opened between the last look and its move goes back, and counts as not moved.
    void putBackWhatIsInUse();

    const CleaningTools& tools_;
    CleaningLog& log_;
    std::optional<OpenFiles> open_;
    Clock::time_point next_;
    std::vector<TrashedItem> watched_;
    std::vector<std::filesystem::path> trashed_;
};

}  // namespace vesk

// Keeps a clean from moving what a program has in use. Checks before each move, and again soon after: a program that
// opened the item in between would go on writing to it in the Trash. Used by a clean's worker, on its thread.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

#include "platform/system/open_files.h"
#include "platform/trash/trash.h"
#include "state/cleaning_log.h"
#include "state/cleaning_worker.h"

namespace vesk {

class UseGuard {
public:
    UseGuard(const CleaningTools& tools, CleaningLog& log) : tools_(tools), log_(log) {}

    /// Begins with these items. From now on it is noticed when a program opens something in them. Those that are next
    /// may already be watched meanwhile.
    void expect(std::span<const SeenItem> items, std::span<const SeenItem> next);

    /// Whether a program has the item in use, as of the last look, which is a second old at most; nothing in the item
    /// was opened since, as far as the system tells that.
    bool isInUse(const std::filesystem::path& item);

    /// Adds an item that was moved to the Trash.
    void watch(const SeenItem& item, const TrashOutcome& outcome);

    /// Checks once more the items moved since the last look.
    void finish();

    /// The places in the Trash of the items that stay there, as far as they are known.
    std::vector<std::filesystem::path> trashed() const;

private:
    using Clock = std::chrono::steady_clock;

    void prepareWatch(std::span<const SeenItem> items);
    bool isNoticed(const std::filesystem::path& item) const;
    void lookAgain();
    // Restores each item that a program opened between the look before its move and this one; it counts as not moved.
    void restoreWhatIsInUse();

    const CleaningTools& tools_;
    CleaningLog& log_;
    bool isPrepared_ = false;
    std::optional<OpenFiles> open_;
    // When the last look began, and when the next is due.
    Clock::time_point looked_;
    Clock::time_point next_;
    // The items moved so far; those before `checked_` have been checked since their move.
    std::vector<TrashedItem> moved_;
    std::ptrdiff_t checked_ = 0;
};

}  // namespace vesk

// Where the items of a past run are now: still in the Trash, back, or gone, and why. Computed on another thread when a
// view asks (ui/run_detail.h); does not use Store.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "platform/trash/trash.h"

namespace vesk {

struct RunReport {
    /// How many items are in the Trash, back in their original places, and neither.
    std::size_t inTrash = 0;
    std::size_t back = 0;
    std::size_t gone = 0;
    /// "NAME: why" for each of the first items that are not restored and cannot be; those in the Trash first.
    std::vector<std::string> lines{};
    /// How many such items are not in `lines`.
    std::size_t more = 0;
    friend bool operator==(const RunReport&, const RunReport&) = default;

    /// The counts as a sentence.
    std::string summary() const;
};

/// Checks every item. `stopRequested` is called before each; once it returns true, the report is incomplete.
RunReport reportOn(
    const std::vector<TrashedItem>& items, const std::function<bool()>& stopRequested = [] { return false; });

}  // namespace vesk

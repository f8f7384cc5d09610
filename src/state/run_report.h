// How the items of a past run stand: what is still in the Trash, and why the rest of an undo is not back. Worked out on
// a thread of its own when a view asks; knows nothing of Store.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "platform/trash/trash.h"

namespace vesk {

struct RunReport {
    /// How many items are in the Trash, back at their places, and neither.
    std::size_t inTrash = 0;
    std::size_t back = 0;
    std::size_t gone = 0;
    /// One line for each of the first items that are neither ready to come back nor back, those in the Trash first:
    /// "NAME: why".
    std::vector<std::string> lines{};
    /// How many such items `lines` leaves out.
    std::size_t more = 0;
    friend bool operator==(const RunReport&, const RunReport&) = default;

    /// What the counts come to, in a sentence.
    std::string summary() const;
};

/// Looks at every item. Asked before each, `stopRequested` ends it early; what it returns then is of no use.
RunReport reportOn(
    const std::vector<TrashedItem>& items, const std::function<bool()>& stopRequested = [] { return false; });

}  // namespace vesk

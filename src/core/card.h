// One suggestion: a group of entries that can go together, with what the user needs to decide. A plain value, created
// by a rule on its thread and then owned by Store.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/bucket.h"
#include "core/entry.h"

namespace vesk {

/// No card counts as unused for less.
inline constexpr double leastDormancyDays = 1.0;

struct Card {
    /// Stable identifier chosen by the rule; unique within one scan's result.
    std::string id;
    std::string title;
    /// Name of the system pictogram.
    std::string symbol;
    Bucket bucket = Bucket::safe;
    /// How likely the user wants it removed, 0 to 1; a factor of `priority`.
    double confidence = 0;
    /// The rule's estimate of what removal costs, 1 to 5; a divisor of `priority`.
    double risk = 0;
    /// One sentence.
    std::string summary;
    /// What removing the entries costs the user.
    std::string why;
    /// Days since anything on the card was last used.
    double dormancyDays = 0;
    /// Largest first.
    std::vector<Entry> entries;
    /// Stamps of the local backup snapshots on this card; empty for every other card.
    std::vector<std::string> snapshotIDs;
    /// Whether the card is ticked for cleaning.
    bool selected = false;

    /// Bytes of all entries. Ends the program if the sum does not fit 64 bits.
    std::int64_t size() const;

    /// The sort key: confidence x days unused (at least 1) x MiB / risk (at least 0.1).
    double priority() const;
};

}  // namespace vesk

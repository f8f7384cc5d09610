// One past cleanup, as the history keeps it. A plain value.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/date.h"
#include "platform/uuid.h"

namespace vesk {

struct HistoryEntry {
    /// One item that reached the Trash.
    struct Move {
        /// Absolute path where the item was.
        std::string original;
        /// Absolute path of the item inside the Trash.
        std::string trashed;
        /// Bytes, as the scan measured them.
        std::int64_t size = 0;
        friend bool operator==(const Move&, const Move&) = default;
    };

    Uuid id = Uuid::random();
    /// When the run finished its work: seconds since 2001-01-01 00:00:00 UTC, with fraction. Kept as it is stored,
    /// since any finite number may be, and `Date` holds three centuries on either side of 1970 alone.
    double date = 0;
    /// Bytes freed, or in a preview the bytes that would have been.
    std::int64_t bytes = 0;
    bool preview = false;
    /// Titles of the cards that were cleaned, in card order.
    std::vector<std::string> titles;
    /// The items that reached the Trash at a known place, in the order they were moved.
    std::vector<Move> moves;
    std::int64_t snapshotsRemoved = 0;
    /// True once an undo has put back every item of `moves`.
    bool undone = false;

    friend bool operator==(const HistoryEntry&, const HistoryEntry&) = default;
};

/// 2001-01-01 00:00:00 UTC, from which the history counts, in seconds since 1970.
inline constexpr std::int64_t historyEpoch = 978'307'200;

/// A date as the history keeps it.
inline double historyDate(Date date) {
    return std::chrono::duration<double>(date.time_since_epoch() - std::chrono::seconds(historyEpoch)).count();
}

/// The nearest moment that `Date` can hold to a date as the history keeps it.
inline Date dateFromHistory(double date) {
    // A little within three centuries on either side of 1970, so that rounding does not lead outside.
    constexpr double most = 9'200'000'000.0;
    const double seconds = std::clamp(date + static_cast<double>(historyEpoch), -most, most);
    return Date(std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds)));
}

}  // namespace vesk

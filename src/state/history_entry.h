// One past cleanup in the history. A plain value.
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
    /// When the run finished: seconds since 2001-01-01 00:00:00 UTC, with fraction. A number as it is stored, which may
    /// be any finite one; `Date` only reaches about three centuries on either side of 1970.
    double date = 0;
    /// Bytes freed; in a preview, the bytes that would have been freed.
    std::int64_t bytes = 0;
    bool preview = false;
    /// Titles of the cards that were cleaned, in card order.
    std::vector<std::string> titles;
    /// The items that reached the Trash at a known place, in the order they were moved.
    std::vector<Move> moves;
    std::int64_t snapshotsRemoved = 0;
    /// True if the last undo restored every item of `moves`.
    bool undone = false;

    friend bool operator==(const HistoryEntry&, const HistoryEntry&) = default;
};

/// 2001-01-01 00:00:00 UTC, the history's epoch, in seconds since 1970.
inline constexpr std::int64_t historyEpoch = 978'307'200;

/// A date as the history stores it.
inline double historyDate(Date date) {
    return std::chrono::duration<double>(date.time_since_epoch() - std::chrono::seconds(historyEpoch)).count();
}

/// The `Date` nearest to a date as the history stores it.
inline Date dateFromHistory(double date) {
    // A little less than `Date` can hold on either side of 1970, so that rounding cannot overflow it.
    constexpr double most = 9'200'000'000.0;
    const double seconds = std::clamp(date + static_cast<double>(historyEpoch), -most, most);
    return Date(std::chrono::round<std::chrono::nanoseconds>(std::chrono::duration<double>(seconds)));
}

}  // namespace vesk

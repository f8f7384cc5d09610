// One past cleanup, as the history keeps it. A plain value, owned by Store on the main thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/uuid.h"
#include "platform/date.h"

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
    /// When the run finished its work.
    Date date;
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

}  // namespace vesk

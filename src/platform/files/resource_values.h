// What a stat of one item tells, named like macOS's URL resource values. Plain values, safe on any thread.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/date.h"

namespace vesk {

struct ResourceValues {
    /// Bytes on disk of all forks and metadata; absent if the file system does not say.
    std::optional<std::int64_t> totalFileAllocatedSize;
    /// Bytes on disk of the data alone; absent if the file system does not say.
    std::optional<std::int64_t> fileAllocatedSize;
    /// True for a regular file; false for folders, links, sockets, FIFOs and devices.
    bool isRegularFile = false;
    /// True for a folder; false for a link to one.
    bool isDirectory = false;
    /// True for a link, wherever it leads.
    bool isSymbolicLink = false;
    /// Last access; absent if the file system does not keep it.
    std::optional<Date> contentAccessDate;
    /// Last change of the content; absent if the file system does not say.
    std::optional<Date> contentModificationDate;
};

/// An item's dates as a scan saw them, to notice later changes. An absent date is not compared.
struct ItemDates {
    std::optional<Date> modified;
    std::optional<Date> accessed;
};

/// Whether one of the item's dates is later than the one seen.
inline bool isNewer(const ResourceValues& values, const ItemDates& seen) {
    return (seen.modified && values.contentModificationDate > seen.modified) ||
           (seen.accessed && values.contentAccessDate > seen.accessed);
}

}  // namespace vesk

// What one look at a file-system item tells, under the names that the platform's URL resource values have.
// Plain values, safe on any thread.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/date.h"

namespace vesk {

struct ResourceValues {
    /// Bytes taken on disk by all forks and metadata; absent when the file system does not say.
    std::optional<std::int64_t> totalFileAllocatedSize;
    /// Bytes taken on disk by the data alone; absent when the file system does not say.
    std::optional<std::int64_t> fileAllocatedSize;
    /// True for a regular file; false for folders, links, sockets, FIFOs and devices.
    bool isRegularFile = false;
    /// True for a folder; false for a link to one.
    bool isDirectory = false;
    /// True for a link, wherever it leads.
    bool isSymbolicLink = false;
    /// Last read; absent on file systems that keep no such time.
    std::optional<Date> contentAccessDate;
    /// Last change of the content; absent when the file system does not say.
    std::optional<Date> contentModificationDate;
};

/// Dates of an item that tell whether it is still the old one that was seen. Absent: of no matter.
struct ItemDates {
    std::optional<Date> modified;
    std::optional<Date> accessed;
};

/// Whether an item with these values has a date that is later than the one seen.
inline bool isNewer(const ResourceValues& values, const ItemDates& seen) {
    return (seen.modified && values.contentModificationDate > seen.modified) ||
           (seen.accessed && values.contentAccessDate > seen.accessed);
}

}  // namespace vesk

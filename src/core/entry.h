// One measured file or folder on a card. A plain value: created by Probe and the rules on their threads, copied freely,
// never changed afterwards.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "platform/date.h"
#include "platform/uuid.h"

namespace vesk {

struct Entry {
    /// New for each entry, so two entries for the same path are never equal.
    Uuid id = Uuid::random();
    /// Absolute path of the item, in the file system's bytes.
    std::filesystem::path url;
    /// The label shown to the user, chosen by the rule; not necessarily the file name.
    std::string name;
    /// Bytes on disk, as measured.
    std::int64_t size = 0;
    /// The newest use date found inside; absent if none was readable.
    std::optional<Date> lastUsed;

    friend bool operator==(const Entry&, const Entry&) = default;
};

}  // namespace vesk

template <>
struct std::hash<vesk::Entry> {
    std::size_t operator()(const vesk::Entry& entry) const noexcept;
};

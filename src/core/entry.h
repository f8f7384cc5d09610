// One measured file or folder of a card. A plain value: made by Probe and the rules on their threads, copied freely,
// never changed once made.
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
    /// Fresh for each entry made, so two entries for the same path are never equal.
    Uuid id = Uuid::random();
    /// Absolute location of the item: bytes as the file system has them.
    std::filesystem::path url;
    /// The label shown to the user, chosen by the rule; not necessarily the file name.
    std::string name;
    /// Bytes taken on disk, as measured.
    std::int64_t size = 0;
    /// The newest use found inside; absent when none was readable.
    std::optional<Date> lastUsed;

    friend bool operator==(const Entry&, const Entry&) = default;
};

}  // namespace vesk

template <>
struct std::hash<vesk::Entry> {
    std::size_t operator()(const vesk::Entry& entry) const noexcept;
};

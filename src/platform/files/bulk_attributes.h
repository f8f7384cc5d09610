// Parses the records that macOS returns when a folder's names and attributes are read together (getattrlistbulk(2)).
// Makes no system calls, so that it can be tested on every system. Used by directory_macos.cpp. Callable from any
// thread; allocates nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/files/directory.h"
#include "platform/files/resource_values.h"

namespace vesk {

/// The requested attributes, as numbered in <sys/attr.h> (ATTR_CMN_..., ATTR_FILE_...).
namespace bulk {

inline constexpr std::uint32_t name = 0x00000001;
inline constexpr std::uint32_t objectType = 0x00000008;
inline constexpr std::uint32_t modificationTime = 0x00000400;
inline constexpr std::uint32_t accessTime = 0x00001000;
inline constexpr std::uint32_t error = 0x20000000;
inline constexpr std::uint32_t returnedAttributes = 0x80000000;
inline constexpr std::uint32_t commonWanted =
    returnedAttributes | error | name | objectType | modificationTime | accessTime;

inline constexpr std::uint32_t fileAllocatedSize = 0x00000004;
inline constexpr std::uint32_t fileDataAllocatedSize = 0x00000400;
inline constexpr std::uint32_t fileWanted = fileAllocatedSize | fileDataAllocatedSize;

/// Object types, as numbered in <sys/vnode.h> (VREG, VDIR, VLNK).
inline constexpr std::uint32_t regularFileType = 1;
inline constexpr std::uint32_t folderType = 2;
inline constexpr std::uint32_t linkType = 5;

}  // namespace bulk

/// One record: an item of the folder.
struct BulkItem {
    /// The item's name, null-terminated inside the buffer; null only if `error` says why.
    const char* name = nullptr;
    /// Why the item's attributes could not be read (an errno value); 0 if they could.
    int error = 0;
    ItemKind kind = ItemKind::unknown;
    /// Absent unless the record has everything that `statItem` would return for such an item. (For a folder, no size.)
    std::optional<ResourceValues> values;
};

/// Takes one record off the front of `records`. Absent, with `records` unchanged, if there is no complete record of the
/// requested attributes. Never reads outside `records`, whatever it contains.
std::optional<BulkItem> takeBulkItem(std::span<const std::byte>& records);

/// Whether `records` starts with `count` complete records.
bool holdsBulkItems(std::span<const std::byte> records, std::size_t count);

}  // namespace vesk

// What macOS hands over when a folder's names and attributes are read in one go (getattrlistbulk(2)): records in a
// buffer, taken apart here without a system call, so that every system can test it. Only directory_macos.cpp uses
// it otherwise. Any thread; allocates nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/files/directory.h"
#include "platform/files/resource_values.h"

namespace vesk {

/// The attributes that a reading asks for, as <sys/attr.h> numbers them (ATTR_CMN_..., ATTR_FILE_...).
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

/// Object types, as <sys/vnode.h> numbers them (VREG, VDIR, VLNK).
inline constexpr std::uint32_t regularFileType = 1;
inline constexpr std::uint32_t folderType = 2;
inline constexpr std::uint32_t linkType = 5;

}  // namespace bulk

/// One record: an item of the folder that was read.
struct BulkItem {
    /// The item's name, ending in a zero byte inside the buffer; null only when `error` says why.
    const char* name = nullptr;
    /// The errno value with which the item's attributes could not be read; 0 when they could.
    int error = 0;
    ItemKind kind = ItemKind::unknown;
    /// Absent unless the record told all that `statItem` would tell of such an item. (Of a folder it tells no size.)
    std::optional<ResourceValues> values;
};

/// Takes one record off the front of `records`. Absent, with `records` unchanged, when what stands there is no whole
/// record made of the attributes asked for: nothing outside of `records` is ever read, whatever it holds.
std::optional<BulkItem> takeBulkItem(std::span<const std::byte>& records);

/// Whether `records` starts with `count` whole records.
bool holdsBulkItems(std::span<const std::byte> records, std::size_t count);

}  // namespace vesk

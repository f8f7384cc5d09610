// macOS's records of a folder's items: nothing outside them is read, whatever they contain.

#include <cstring>
#include <memory>

#include "fuzz.h"
#include "platform/files/bulk_attributes.h"

namespace {

using vesk::BulkItem;

bool liesIn(const char* name, std::span<const std::byte> records) {
    const auto* start = reinterpret_cast<const char*>(records.data());
    return name >= start && name < start + records.size() &&
           std::memchr(name, 0, static_cast<std::size_t>(start + records.size() - name)) != nullptr;
}

void isSound(const BulkItem& item, std::span<const std::byte> records) {
    VESK_HOLDS(item.error >= 0);
    VESK_HOLDS(item.name != nullptr || item.error != 0);
    if (item.name != nullptr) {
        VESK_HOLDS(liesIn(item.name, records));
        VESK_HOLDS(std::strchr(item.name, '/') == nullptr && item.name[0] != '\0');
    }
    if (item.values) {
        VESK_HOLDS(item.error == 0 && item.kind != vesk::ItemKind::unknown);
        VESK_HOLDS(item.values->totalFileAllocatedSize.value_or(0) >= 0);
        VESK_HOLDS(item.values->fileAllocatedSize.value_or(0) >= 0);
        VESK_HOLDS(item.values->isRegularFile == (item.kind == vesk::ItemKind::regularFile));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Memory of exactly this size, so that reading one byte too many is detected.
    const auto buffer = std::make_unique<std::byte[]>(size);
    if (size > 0) {
        std::memcpy(buffer.get(), data, size);
    }
    const std::span<const std::byte> whole(buffer.get(), size);
    std::span<const std::byte> rest = whole;
    std::size_t count = 0;
    for (;;) {
        const std::span<const std::byte> before = rest;
        const auto item = vesk::takeBulkItem(rest);
        if (!item) {
            VESK_HOLDS(rest.data() == before.data() && rest.size() == before.size());
            break;
        }
        VESK_HOLDS(rest.size() + sizeof(std::uint32_t) <= before.size());
        VESK_HOLDS(rest.data() + rest.size() == whole.data() + whole.size());
        isSound(*item, before.first(before.size() - rest.size()));
        ++count;
    }
    VESK_HOLDS(vesk::holdsBulkItems(whole, count) && !vesk::holdsBulkItems(whole, count + 1));
    return 0;
}

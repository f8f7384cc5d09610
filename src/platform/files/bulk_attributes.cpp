#include "platform/files/bulk_attributes.h"

#include <cstring>
#include <string_view>
#include <type_traits>

namespace vesk {

namespace {

// The structures of <sys/attr.h> and the time stamp of every 64-bit macOS, as they lie in a record.
struct ReturnedAttributes {
    std::uint32_t common;
    std::uint32_t volume;
    std::uint32_t folder;
    std::uint32_t file;
    std::uint32_t fork;
};

struct Reference {
    std::int32_t offset;
    std::uint32_t length;
};

struct TimeStamp {
    std::int64_t seconds;
    std::int64_t nanoseconds;
};

// Reads a record from front to back and never past its end. Attributes lie on 4-byte boundaries, so that larger ones
// need not be aligned: they are copied out.
class RecordReader {
public:
    explicit RecordReader(std::span<const std::byte> record) : record_(record) {}

    template <typename Value>
    std::optional<Value> take() {
        static_assert(std::is_trivially_copyable_v<Value> && sizeof(Value) % 4 == 0);
        if (record_.size() - at_ < sizeof(Value)) {
            return std::nullopt;
        }
        Value value;
        std::memcpy(&value, record_.data() + at_, sizeof value);
        at_ += sizeof value;
        return value;
    }

    // The name that a reference leads to; its offset counts from the reference itself.
    const char* takeName() {
        const std::size_t from = at_;
        const auto reference = take<Reference>();
        if (!reference || reference->offset < 0 || reference->length < 2) {
            return nullptr;
        }
        const std::size_t start = from + static_cast<std::size_t>(reference->offset);
        if (start < at_ || start > record_.size() || record_.size() - start < reference->length) {
            return nullptr;
        }
        const char* text = reinterpret_cast<const char*>(record_.data() + start);
        // A name holds no zero byte and no slash: it is used as a path of one step.
        const std::string_view whole(text, reference->length - 1);
        const bool isName = text[whole.size()] == '\0' && whole.find_first_of(std::string_view("\0/", 2)) == whole.npos;
        return isName ? text : nullptr;
    }

private:
    std::span<const std::byte> record_;
    std::size_t at_ = 0;
};

bool isSubset(std::uint32_t attributes, std::uint32_t of) {
    return (attributes & ~of) == 0;
}

// An unknown attribute would shift all that follow, so a record with one is not understood at all.
bool onlyWanted(const ReturnedAttributes& returned) {
    return isSubset(returned.common, bulk::commonWanted) && isSubset(returned.file, bulk::fileWanted) &&
           returned.volume == 0 && returned.folder == 0 && returned.fork == 0;
}

ItemKind kindOf(std::uint32_t objectType) {
    switch (objectType) {
        case 0:
            return ItemKind::unknown;
        case bulk::regularFileType:
            return ItemKind::regularFile;
        case bulk::folderType:
            return ItemKind::folder;
        default:
            return ItemKind::other;
    }
}

// Each takes one attribute, if the record has it, and returns false when there is no valid one where it should be.
bool takeDate(RecordReader& reader, bool present, std::optional<Date>& date) {
    if (!present) {
        return true;
    }
    const auto stamp = reader.take<TimeStamp>();
    if (stamp) {
        date = dateFromUnix(stamp->seconds, stamp->nanoseconds);
    }
    return stamp.has_value();
}

bool takeSize(RecordReader& reader, bool present, std::optional<std::int64_t>& size) {
    if (!present) {
        return true;
    }
    size = reader.take<std::int64_t>();
    return size.has_value() && *size >= 0;
}

bool tellsAll(ItemKind kind, const ResourceValues& values) {
    return kind != ItemKind::unknown && values.contentAccessDate && values.contentModificationDate &&
           (values.totalFileAllocatedSize || kind != ItemKind::regularFile);
}

std::optional<BulkItem> itemIn(std::span<const std::byte> record) {
    RecordReader reader(record);
    const auto returned = reader.take<ReturnedAttributes>();
    if (!returned || !onlyWanted(*returned)) {
        return std::nullopt;
    }
    const auto has = [&](std::uint32_t attribute) { return (returned->common & attribute) != 0; };

    BulkItem item;
    // The error comes first, though its bit is high: getattrlistbulk(2) packs it next to the returned attributes.
    if (has(bulk::error)) {
        const auto error = reader.take<std::int32_t>();
        if (!error || *error < 0) {
            return std::nullopt;
        }
        item.error = *error;
    }
    if (has(bulk::name)) {
        item.name = reader.takeName();
        if (item.name == nullptr) {
            return std::nullopt;
        }
    }
    if (item.error != 0) {
        return item;
    }
    if (item.name == nullptr) {
        return std::nullopt;
    }

    ResourceValues values;
    if (has(bulk::objectType)) {
        const auto type = reader.take<std::uint32_t>();
        if (!type) {
            return std::nullopt;
        }
        item.kind = kindOf(*type);
        values.isSymbolicLink = *type == bulk::linkType;
    }
    if (!takeDate(reader, has(bulk::modificationTime), values.contentModificationDate) ||
        !takeDate(reader, has(bulk::accessTime), values.contentAccessDate) ||
        !takeSize(reader, (returned->file & bulk::fileAllocatedSize) != 0, values.totalFileAllocatedSize) ||
        !takeSize(reader, (returned->file & bulk::fileDataAllocatedSize) != 0, values.fileAllocatedSize)) {
        return std::nullopt;
    }
    values.isRegularFile = item.kind == ItemKind::regularFile;
    values.isDirectory = item.kind == ItemKind::folder;
    if (tellsAll(item.kind, values)) {
        item.values = values;
    }
    return item;
}

}  // namespace

std::optional<BulkItem> takeBulkItem(std::span<const std::byte>& records) {
    std::uint32_t length = 0;
    if (records.size() < sizeof length) {
        return std::nullopt;
    }
    std::memcpy(&length, records.data(), sizeof length);
    if (length < sizeof length || length > records.size()) {
        return std::nullopt;
    }
    std::optional<BulkItem> item = itemIn(records.subspan(sizeof length, length - sizeof length));
    if (item) {
        records = records.subspan(length);
    }
    return item;
}

bool holdsBulkItems(std::span<const std::byte> records, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (!takeBulkItem(records)) {
            return false;
        }
    }
    return true;
}

}  // namespace vesk

#include "platform/files/bulk_attributes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {
namespace {

// Builds records byte by byte as getattrlistbulk(2) describes them, independently of the code that reads them.
class RecordBuilder {
public:
    RecordBuilder& returned(std::uint32_t common, std::uint32_t file = 0, std::uint32_t folder = 0) {
        return number(common).number(std::uint32_t{0}).number(folder).number(file).number(std::uint32_t{0});
    }

    RecordBuilder& error(int value) { return number(value); }

    // A reference to the name, whose bytes follow the fixed attributes.
    RecordBuilder& name(std::string text) {
        nameAt_ = bytes_.size();
        name_ = std::move(text);
        return number(std::int32_t{0}).number(static_cast<std::uint32_t>(name_.size() + 1));
    }

    RecordBuilder& time(std::int64_t seconds, std::int64_t nanoseconds) { return number(seconds).number(nanoseconds); }

    template <typename Number>
    RecordBuilder& number(Number value) {
        const std::size_t at = bytes_.size();
        bytes_.resize(at + sizeof value);
        std::memcpy(bytes_.data() + at, &value, sizeof value);
        return *this;
    }

    std::vector<std::byte> bytes() const {
        std::vector<std::byte> whole = bytes_;
        if (nameAt_ != 0) {
            put(whole, nameAt_, static_cast<std::int32_t>(whole.size() - nameAt_));
            for (const char character : name_) {
                whole.push_back(static_cast<std::byte>(character));
            }
            whole.push_back(std::byte{0});
        }
        while (whole.size() % 8 != 0) {
            whole.push_back(std::byte{0});
        }
        put(whole, 0, static_cast<std::uint32_t>(whole.size()));
        return whole;
    }

    template <typename Number>
    static void put(std::vector<std::byte>& bytes, std::size_t at, Number value) {
        ASSERT_LE(at + sizeof value, bytes.size());
        std::memcpy(bytes.data() + at, &value, sizeof value);
    }

private:
    std::vector<std::byte> bytes_ = std::vector<std::byte>(4);  // the length, known at the end
    std::string name_;
    std::size_t nameAt_ = 0;
};

// The masks of <sys/attr.h>, written out once more.
constexpr std::uint32_t returned = 0x80000000;
constexpr std::uint32_t error = 0x20000000;
constexpr std::uint32_t name = 0x1;
constexpr std::uint32_t type = 0x8;
constexpr std::uint32_t modified = 0x400;
constexpr std::uint32_t accessed = 0x1000;
constexpr std::uint32_t allocated = 0x4;
constexpr std::uint32_t dataAllocated = 0x400;
constexpr std::uint32_t all = returned | name | type | modified | accessed;

constexpr std::uint32_t regular = 1;
constexpr std::uint32_t folder = 2;
constexpr std::uint32_t link = 5;

std::vector<std::byte> file(const std::string& text, std::int64_t size) {
    return RecordBuilder()
        .returned(all, allocated | dataAllocated)
        .name(text)
        .number(regular)
        .time(1'600'000'000, 5)
        .time(1'700'000'000, 999'999'999)
        .number(size)
        .number(size - 4096)
        .bytes();
}

// The record in memory of exactly its size, so that the address sanitizer and valgrind see a byte too far.
std::optional<BulkItem> read(const std::vector<std::byte>& record, std::string* nameRead = nullptr) {
    const auto exact = std::make_unique<std::byte[]>(record.size());
    std::copy(record.begin(), record.end(), exact.get());
    std::span<const std::byte> rest(exact.get(), record.size());
    std::optional<BulkItem> item = takeBulkItem(rest);
    EXPECT_EQ(rest.size() == record.size(), !item) << "only what was understood is taken";
    if (item && item->name != nullptr) {
        const auto* start = reinterpret_cast<const std::byte*>(item->name);
        EXPECT_TRUE(start >= exact.get() && start + std::strlen(item->name) < exact.get() + record.size());
        if (nameRead != nullptr) {
            *nameRead = item->name;
        }
        item->name = "";  // the buffer goes
    }
    return item;
}

TEST(BulkAttributes, AFileTellsItsNameKindDatesAndBothSizes) {
    std::string nameRead;
    const auto item = read(file("photo.jpg", 12288), &nameRead);
    ASSERT_TRUE(item);
    EXPECT_EQ(nameRead, "photo.jpg");
    EXPECT_EQ(item->kind, ItemKind::regularFile);
    EXPECT_EQ(item->error, 0);
    ASSERT_TRUE(item->values);
    EXPECT_TRUE(item->values->isRegularFile);
    EXPECT_FALSE(item->values->isDirectory);
    EXPECT_EQ(item->values->totalFileAllocatedSize, 12288);
    EXPECT_EQ(item->values->fileAllocatedSize, 8192);
    EXPECT_EQ(item->values->contentModificationDate, dateFromUnix(1'600'000'000, 5));
    EXPECT_EQ(item->values->contentAccessDate, dateFromUnix(1'700'000'000, 999'999'999));
}

TEST(BulkAttributes, NamesOfEveryLengthAndContentComeOutWhole) {
    for (std::size_t length = 1; length <= 255; ++length) {
        const std::string text(length, static_cast<char>('a' + static_cast<int>(length % 26)));
        std::string nameRead;
        ASSERT_TRUE(read(file(text, 4096), &nameRead));
        EXPECT_EQ(nameRead, text);
    }
    for (const std::string text : {"line\nbreak", "\xFF\xFE", "e\xCC\x81", " ", "..."}) {
        std::string nameRead;
        ASSERT_TRUE(read(file(text, 4096), &nameRead));
        EXPECT_EQ(nameRead, text);
    }
}

TEST(BulkAttributes, FoldersAndLinksHaveNoFileAttributes) {
    for (const auto& [number, kind] : {std::pair(folder, ItemKind::folder), std::pair(link, ItemKind::other)}) {
        const auto item = read(RecordBuilder().returned(all).name("x").number(number).time(1, 0).time(2, 0).bytes());
        ASSERT_TRUE(item);
        EXPECT_EQ(item->kind, kind);
        ASSERT_TRUE(item->values);
        EXPECT_EQ(item->values->isDirectory, kind == ItemKind::folder);
        EXPECT_EQ(item->values->isSymbolicLink, number == link);
        EXPECT_FALSE(item->values->isRegularFile);
        EXPECT_EQ(item->values->totalFileAllocatedSize, std::nullopt);
        EXPECT_EQ(item->values->contentModificationDate, dateFromUnix(1, 0));
    }
}

TEST(BulkAttributes, AnErrorStandsBeforeTheNameAndEndsTheRecord) {
    std::string nameRead;
    const auto refused =
        read(RecordBuilder().returned(returned | error | name).error(EPERM).name("private").bytes(), &nameRead);
    ASSERT_TRUE(refused);
    EXPECT_EQ(nameRead, "private");
    EXPECT_EQ(refused->error, EPERM);
    EXPECT_EQ(refused->kind, ItemKind::unknown);
    EXPECT_FALSE(refused->values);

    const auto nameless = read(RecordBuilder().returned(returned | error).error(EIO).bytes());
    ASSERT_TRUE(nameless);
    EXPECT_EQ(nameless->name, nullptr);
    EXPECT_EQ(nameless->error, EIO);

    const auto fine = read(RecordBuilder()
                               .returned(all | error, allocated)
                               .error(0)
                               .name("fine")
                               .number(regular)
                               .time(1, 0)
                               .time(2, 0)
                               .number(std::int64_t{512})
                               .bytes());
    ASSERT_TRUE(fine && fine->values);
    EXPECT_EQ(fine->values->totalFileAllocatedSize, 512);
}

TEST(BulkAttributes, AMissingAttributeLeavesTheItemToALook) {
    const auto noSize = read(RecordBuilder()
                                 .returned(all, dataAllocated)
                                 .name("a")
                                 .number(regular)
                                 .time(1, 0)
                                 .time(2, 0)
                                 .number(std::int64_t{4096})
                                 .bytes());
    ASSERT_TRUE(noSize);
    EXPECT_EQ(noSize->kind, ItemKind::regularFile);
    EXPECT_FALSE(noSize->values);

    const auto noAccess = read(RecordBuilder()
                                   .returned(all & ~accessed, allocated)
                                   .name("a")
                                   .number(regular)
                                   .time(1, 0)
                                   .number(std::int64_t{4096})
                                   .bytes());
    ASSERT_TRUE(noAccess);
    EXPECT_FALSE(noAccess->values);

    const auto noType = read(RecordBuilder().returned(returned | name).name("a").bytes());
    ASSERT_TRUE(noType);
    EXPECT_EQ(noType->kind, ItemKind::unknown);
    EXPECT_FALSE(noType->values);
}

TEST(BulkAttributes, ARecordCutShortAnywhereIsRefused) {
    const std::vector<std::byte> whole = file("name.txt", 4096);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        std::vector<std::byte> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_FALSE(read(cut)) << length << " bytes, claiming to be whole";
    }
    // The record says itself that it is shorter: the attributes, then the name, no longer fit.
    const std::size_t nameEnd = 4 + 20 + 8 + 4 + 16 + 16 + 8 + 8 + sizeof "name.txt";
    for (std::size_t length = 0; length < nameEnd; ++length) {
        std::vector<std::byte> shortened = whole;
        RecordBuilder::put(shortened, 0, static_cast<std::uint32_t>(length));
        EXPECT_FALSE(read(shortened)) << "saying " << length;
    }
}

TEST(BulkAttributes, ANameThatIsNoneIsRefused) {
    constexpr std::size_t reference = 4 + 20;
    const std::vector<std::byte> whole = file("name", 4096);
    for (const std::int32_t offset : {std::int32_t{-1}, std::int32_t{-24}, INT32_MIN, INT32_MAX, std::int32_t{0},
                                      std::int32_t{7}, static_cast<std::int32_t>(whole.size())}) {
        std::vector<std::byte> changed = whole;
        RecordBuilder::put(changed, reference, offset);
        EXPECT_FALSE(read(changed)) << "offset " << offset;
    }
    for (const std::uint32_t length : {0U, 1U, 4U, 6U, 1000U, UINT32_MAX}) {
        std::vector<std::byte> changed = whole;
        RecordBuilder::put(changed, reference + 4, length);
        EXPECT_FALSE(read(changed)) << "length " << length;
    }
    EXPECT_FALSE(read(file("a/b", 4096)));
    EXPECT_FALSE(read(file(std::string("a\0b", 3), 4096)));
    EXPECT_FALSE(read(file("", 4096)));
    EXPECT_FALSE(read(RecordBuilder().returned(all & ~name).number(regular).time(1, 0).time(2, 0).bytes()));
}

TEST(BulkAttributes, AttributesThatNobodyAskedForAreRefused) {
    struct Case {
        std::uint32_t common;
        std::uint32_t file;
        std::uint32_t folder;
    };
    for (const Case& unasked :
         {Case{all | 0x2, 0, 0}, Case{all | 0x40000, 0, 0}, Case{all, 0x1, 0}, Case{all, 0, 0x1}}) {
        EXPECT_FALSE(read(RecordBuilder()
                              .returned(unasked.common, unasked.file, unasked.folder)
                              .name("a")
                              .number(folder)
                              .time(1, 0)
                              .time(2, 0)
                              .time(0, 0)
                              .bytes()));
    }
}

TEST(BulkAttributes, NegativeSizesAndErrorsAreRefused) {
    EXPECT_FALSE(read(file("a", -4096)));
    EXPECT_FALSE(read(RecordBuilder().returned(returned | error | name).error(-1).name("a").bytes()));
}

TEST(BulkAttributes, RecordsAreTakenOneAfterTheOther) {
    std::vector<std::byte> buffer;
    const std::vector<std::string> names = {"one", "a name of another length", "three"};
    for (const std::string& text : names) {
        const std::vector<std::byte> record = file(text, 4096);
        buffer.insert(buffer.end(), record.begin(), record.end());
    }
    EXPECT_TRUE(holdsBulkItems(buffer, 3));
    EXPECT_TRUE(holdsBulkItems(buffer, 0));
    EXPECT_FALSE(holdsBulkItems(buffer, 4));

    std::span<const std::byte> rest = buffer;
    std::vector<std::string> found;
    while (const auto item = takeBulkItem(rest)) {
        found.emplace_back(item->name);
    }
    EXPECT_EQ(found, names);
    EXPECT_TRUE(rest.empty());

    // What follows the last record in the kernel's buffer is old bytes, which nobody may take for one more.
    buffer.resize(buffer.size() + 100, std::byte{0x5A});
    EXPECT_TRUE(holdsBulkItems(buffer, 3));
    EXPECT_FALSE(holdsBulkItems(buffer, 4));
}

TEST(BulkAttributes, OneRecordThatIsNotUnderstoodSpoilsTheBuffer) {
    std::vector<std::byte> buffer = file("good", 4096);
    const std::vector<std::byte> bad = file("b/d", 4096);
    buffer.insert(buffer.end(), bad.begin(), bad.end());
    EXPECT_TRUE(holdsBulkItems(buffer, 1));
    EXPECT_FALSE(holdsBulkItems(buffer, 2));
}

// Whatever bytes are changed, nothing outside the record is read: `read` gives each record memory of its exact size,
// and checks that the name lies inside.
TEST(BulkAttributes, ChangedAndRandomBytesNeverLeadOutside) {
    std::mt19937 random(20230817);  // NOLINT(cert-msc51-cpp): the same bytes in every run
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random()) % limit; };
    const std::vector<std::byte> whole = file("a name to spoil", 4096);
    int understood = 0;
    for (int i = 0; i < 50'000; ++i) {
        std::vector<std::byte> changed = whole;
        for (std::size_t changes = 1 + below(4); changes > 0; --changes) {
            changed[below(changed.size())] = static_cast<std::byte>(random());
        }
        understood += read(changed).has_value() ? 1 : 0;
    }
    EXPECT_GT(understood, 0) << "changes to the dates alone are no mistake";
    for (int i = 0; i < 50'000; ++i) {
        std::vector<std::byte> noise(below(128));
        std::generate(noise.begin(), noise.end(), [&] { return static_cast<std::byte>(random()); });
        if (noise.size() >= 4 && below(2) == 0) {
            RecordBuilder::put(noise, 0, static_cast<std::uint32_t>(noise.size()));
        }
        read(noise);
    }
}

}  // namespace
}  // namespace vesk

// The encoder.

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

#include "platform/text.h"
#include "state/history_codec.h"
#include "state/json.h"

namespace vesk {

namespace {

// An output stream for RapidJSON that appends to a string.
struct TextStream {
    using Ch = char;
    void Put(char character) { text.push_back(character); }
    void Flush() {}
    std::string text;
};

// Whether a text needs no escapes in JSON.
bool isPlain(std::string_view text) {
    constexpr unsigned char firstPrintable = 0x20;
    const bool needsEscape = std::any_of(text.begin(), text.end(), [](char character) {
        return static_cast<unsigned char>(character) < firstPrintable || character == '"' || character == '\\';
    });
    return !needsEscape && isUtf8(text);
}

// Writes most of the JSON itself, for speed; RapidJSON writes the texts that need escapes, and fractions.
class HistoryWriter {
public:
    explicit HistoryWriter(std::size_t expectedSize) { out_.text.reserve(expectedSize); }

    std::string written(const std::vector<HistoryEntry>& entries) {
        list(entries, [this](const HistoryEntry& entry) { add(entry); });
        return std::move(out_.text);
    }

private:
    void add(const HistoryEntry& entry) {
        piece(R"({"id":)");
        add(entry.id.text());
        piece(R"(,"date":)");
        rapidjson::Writer(out_).Double(entry.date);
        piece(R"(,"bytes":)");
        add(entry.bytes);
        piece(entry.preview ? R"(,"preview":true,"titles":)" : R"(,"preview":false,"titles":)");
        list(entry.titles, [this](const std::string& title) { add(title); });
        piece(R"(,"moves":)");
        list(entry.moves, [this](const HistoryEntry::Move& move) { add(move); });
        piece(R"(,"snapshotsRemoved":)");
        add(entry.snapshotsRemoved);
        piece(entry.undone ? R"(,"undone":true})" : R"(,"undone":false})");
    }

    void add(const HistoryEntry::Move& move) {
        piece(R"({"original":)");
        add(move.original);
        piece(R"(,"trashed":)");
        add(move.trashed);
        piece(R"(,"size":)");
        add(move.size);
        piece("}");
    }

    void add(const std::string& text) {
        if (isPlain(text)) {
            piece("\"");
            piece(text);
            piece("\"");
            return;
        }
        const std::string decoded = decodedUtf8(text);
        rapidjson::Writer(out_).String(decoded.data(), static_cast<rapidjson::SizeType>(decoded.size()));
    }

    void add(std::int64_t number) {
        std::array<char, 24> digits{};
        piece({digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr});
    }

    template <typename Item, typename Add>
    void list(const std::vector<Item>& items, Add add) {
        piece("[");
        bool isFirst = true;
        for (const Item& item : items) {
            piece(std::exchange(isFirst, false) ? "" : ",");
            add(item);
        }
        piece("]");
    }

    void piece(std::string_view text) { out_.text.append(text); }

    TextStream out_;
};

// Roughly the number of bytes that the entries will take, to allocate the text once.
std::size_t expectedSize(const std::vector<HistoryEntry>& entries) {
    constexpr std::size_t aroundEntry = 300;
    constexpr std::size_t aroundMove = 64;
    std::size_t sum = 2;
    for (const HistoryEntry& entry : entries) {
        sum += aroundEntry;
        for (const HistoryEntry::Move& move : entry.moves) {
            sum += aroundMove + move.original.size() + move.trashed.size();
        }
    }
    return sum;
}

}  // namespace

std::string encodeHistory(const std::vector<HistoryEntry>& entries) {
    return HistoryWriter(expectedSize(entries)).written(entries);
}

}  // namespace vesk

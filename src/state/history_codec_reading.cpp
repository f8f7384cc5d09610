// The decoder.

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <locale>
#include <sstream>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/text.h"
#include "state/history_codec.h"
#include "state/json.h"

namespace vesk {

namespace {

// The format needs four levels; unknown values may hold a few more.
constexpr int deepestLevel = 32;

// The fields of an entry and of a move. Each is one bit, so that a number can hold a set of them.
enum Field : unsigned {
    unknown = 0,
    id = 1U << 0U,
    date = 1U << 1U,
    bytes = 1U << 2U,
    preview = 1U << 3U,
    titles = 1U << 4U,
    moves = 1U << 5U,
    snapshotsRemoved = 1U << 6U,
    undone = 1U << 7U,
    original = 1U << 8U,
    trashed = 1U << 9U,
    size = 1U << 10U,
};

struct Key {
    std::string_view name;
    Field field;
};

constexpr std::array<Key, 8> entryKeys = {{{"id", id},
                                           {"date", date},
                                           {"bytes", bytes},
                                           {"preview", preview},
                                           {"titles", titles},
                                           {"moves", moves},
                                           {"snapshotsRemoved", snapshotsRemoved},
                                           {"undone", undone}}};
constexpr std::array<Key, 3> moveKeys = {{{"original", original}, {"trashed", trashed}, {"size", size}}};

template <std::size_t Count>
constexpr unsigned allOf(const std::array<Key, Count>& keys) {
    unsigned all = 0;
    for (const Key& key : keys) {
        all |= key.field;
    }
    return all;
}

template <std::size_t Count>
Field fieldOf(const std::array<Key, Count>& keys, std::string_view name) {
    for (const Key& key : keys) {
        if (key.name == name) {
            return key.field;
        }
    }
    return unknown;
}

// RapidJSON passes numbers on as text, since the history distinguishes integers from fractions and needs every bit.
bool readInteger(std::string_view digits, std::int64_t& number) {
    const auto [end, failure] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return failure == std::errc() && end == digits.data() + digits.size();
}

bool readSeconds(std::string_view digits, double& seconds) {
    std::istringstream stream{std::string(digits)};
    stream.imbue(std::locale::classic());
    // Some standard libraries report a number that underflows to zero as a failure, others do not.
    return (stream >> seconds || std::abs(seconds) < 1) && std::isfinite(seconds);
}

// Builds the entries from the parser's events. Each function returns whether to go on.
class HistoryReader : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, HistoryReader> {
public:
    // `most`: the bytes that the entries may take.
    explicit HistoryReader(std::size_t most) : most_(most) {}

    std::vector<HistoryEntry> entries;

    bool Null() const { return isPassedOver(); }

    bool Bool(bool truth) {
        if (isPassedOver()) {
            return true;
        }
        if (place_ != Place::entry || (field_ != preview && field_ != undone)) {
            return false;
        }
        (field_ == preview ? entry_.preview : entry_.undone) = truth;
        return true;
    }

    bool RawNumber(const char* digits, rapidjson::SizeType length, bool /*copy*/) {
        if (isPassedOver()) {
            return true;
        }
        const std::string_view number(digits, length);
        if (place_ == Place::move) {
            return field_ == size && readInteger(number, move_.size);
        }
        return place_ == Place::entry && ((field_ == date && readSeconds(number, entry_.date)) ||
                                          (field_ == bytes && readInteger(number, entry_.bytes)) ||
                                          (field_ == snapshotsRemoved && readInteger(number, entry_.snapshotsRemoved)));
    }

    bool String(const char* characters, rapidjson::SizeType length, bool /*copy*/) {
        const std::string_view text(characters, length);
        // The parser accepts any bytes between quotation marks, and unpaired surrogates.
        if (!isUtf8(text)) {
            return false;
        }
        return isPassedOver() || (hold(text.size()) && take(text));
    }

    bool StartObject() {
        if (++level_ > deepestLevel) {
            return false;
        }
        if (isPassedOver()) {
            passedOver_ += passedOver_ == 0 ? level_ : 0;
            return true;
        }
        if (place_ == Place::list && hold(sizeof(HistoryEntry))) {
            place_ = Place::entry;
            entry_ = HistoryEntry();
            entryFields_ = 0;
            return true;
        }
        if (place_ == Place::moves && hold(sizeof(HistoryEntry::Move))) {
            place_ = Place::move;
            moveFields_ = 0;
            return true;
        }
        return false;
    }

    bool Key(const char* characters, rapidjson::SizeType length, bool /*copy*/) {
        const std::string_view name(characters, length);
        if (passedOver_ != 0) {
            return isUtf8(name);
        }
        const bool isEntry = place_ == Place::entry;
        unsigned& seen = isEntry ? entryFields_ : moveFields_;
        field_ = isEntry ? fieldOf(entryKeys, name) : fieldOf(moveKeys, name);
        const bool isRepeated = (seen & field_) != 0;
        seen |= field_;
        return !isRepeated && (field_ != unknown || isUtf8(name));
    }

    bool EndObject(rapidjson::SizeType /*members*/) {
        if (leave()) {
            return true;
        }
        if (place_ == Place::move) {
            place_ = Place::moves;
            moves_.push_back(std::move(move_));
            return moveFields_ == allOf(moveKeys);
        }
        place_ = Place::list;
        entries.push_back(std::move(entry_));
        return entryFields_ == allOf(entryKeys);
    }

    bool StartArray() {
        if (++level_ > deepestLevel) {
            return false;
        }
        if (isPassedOver()) {
            passedOver_ += passedOver_ == 0 ? level_ : 0;
            return true;
        }
        if (place_ == Place::start) {
            place_ = Place::list;
            return true;
        }
        if (place_ != Place::entry || (field_ != titles && field_ != moves)) {
            return false;
        }
        place_ = field_ == titles ? Place::titles : Place::moves;
        return true;
    }

    bool EndArray(rapidjson::SizeType /*elements*/) {
        if (leave()) {
            return true;
        }
        if (place_ == Place::moves) {
            // Copied at their exact number: lists that grow step by step may take twice the memory.
            entry_.moves.assign(std::make_move_iterator(moves_.begin()), std::make_move_iterator(moves_.end()));
            moves_.clear();
        }
        place_ = place_ == Place::list ? Place::end : Place::entry;
        return true;
    }

private:
    // Where the parser is.
    enum class Place { start, list, entry, titles, moves, move, end };

    // Whether the current value is, or is inside, the value of an unknown key.
    bool isPassedOver() const {
        return passedOver_ != 0 || ((place_ == Place::entry || place_ == Place::move) && field_ == unknown);
    }

    // Leaves a level. Returns whether it was being ignored.
    bool leave() {
        const bool wasPassedOver = passedOver_ != 0;
        if (level_-- == passedOver_) {
            passedOver_ = 0;
        }
        return wasPassedOver;
    }

    // Counts the memory used: a list of empty titles takes ten times as much in memory as in the file.
    bool hold(std::size_t more) {
        held_ += more;
        return held_ <= most_;
    }

    bool take(std::string_view text) {
        if (place_ == Place::titles) {
            entry_.titles.emplace_back(text);
            return hold(sizeof(std::string));
        }
        if (place_ == Place::move && (field_ == original || field_ == trashed)) {
            (field_ == original ? move_.original : move_.trashed) = text;
            return true;
        }
        if (place_ == Place::entry && field_ == id) {
            const std::optional<Uuid> read = Uuid::parse(text);
            entry_.id = read.value_or(entry_.id);
            return read.has_value();
        }
        return false;
    }

    Place place_ = Place::start;
    Field field_ = unknown;
    int level_ = 0;
    // The level of the outermost value being ignored; 0 if none is.
    int passedOver_ = 0;
    std::size_t held_ = 0;
    std::size_t most_;
    HistoryEntry entry_;
    HistoryEntry::Move move_;
    std::vector<HistoryEntry::Move> moves_;
    unsigned entryFields_ = 0;
    unsigned moveFields_ = 0;
};

}  // namespace

std::optional<std::vector<HistoryEntry>> decodeHistory(std::string text, std::size_t most) {
    // The parser would take a NUL as the end of the text.
    if (text.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    // Unescapes each string in place, without allocating memory.
    rapidjson::InsituStringStream stream(text.data());
    rapidjson::Reader parser;
    HistoryReader reader(most);
    constexpr unsigned how = rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag;
    if (parser.Parse<how>(stream, reader).IsError()) {
        return std::nullopt;
    }
    return std::move(reader.entries);
}

}  // namespace vesk

#include "state/history_codec.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "platform/date.h"

namespace vesk {

namespace {

using nlohmann::json;
using nlohmann::ordered_json;

// 2001-01-01 00:00:00 UTC, from which the stored dates count.
constexpr Date referenceDate{std::chrono::seconds(978'307'200)};

// The format needs four levels; unknown values may hold a few more.
constexpr int deepestLevel = 32;

double storedDate(Date date) {
    return std::chrono::duration<double>(date.time_since_epoch() - referenceDate.time_since_epoch()).count();
}

std::optional<Date> dateFromStored(double seconds) {
    // Kept a little within what nanoseconds in 64 bits hold, counted from 1970 and from 2001, so that neither rounding
    // nor writing the date again leads outside: years 1709 to 2262.
    constexpr double earliest = -9'200'000'000.0;
    constexpr double latest = 8'240'000'000.0;
    if (!(seconds >= earliest && seconds <= latest)) {
        return std::nullopt;
    }
    const std::chrono::duration<double> sinceReference(seconds);
    return referenceDate + std::chrono::round<std::chrono::nanoseconds>(sinceReference);
}

ordered_json encoded(const HistoryEntry::Move& move) {
    return {{"original", move.original}, {"trashed", move.trashed}, {"size", move.size}};
}

ordered_json encoded(const HistoryEntry& entry) {
    ordered_json moves = ordered_json::array();
    for (const HistoryEntry::Move& move : entry.moves) {
        moves.push_back(encoded(move));
    }
    ordered_json titles = ordered_json::array();
    for (const std::string& title : entry.titles) {
        titles.push_back(title);
    }
    return {
        {"id", entry.id.text()},
        {"date", storedDate(entry.date)},
        {"bytes", entry.bytes},
        {"preview", entry.preview},
        {"titles", std::move(titles)},
        {"moves", std::move(moves)},
        {"snapshotsRemoved", entry.snapshotsRemoved},
        {"undone", entry.undone},
    };
}

// Takes one value out of an object: each function says whether the value was there and of the right kind.
class Fields {
public:
    explicit Fields(const json& object) : object_(object) {}

    bool take(const char* key, std::string& text) const {
        const json* value = find(key);
        if (value == nullptr || !value->is_string()) {
            return false;
        }
        text = value->get_ref<const std::string&>();
        return true;
    }

    bool take(const char* key, bool& truth) const {
        const json* value = find(key);
        if (value == nullptr || !value->is_boolean()) {
            return false;
        }
        truth = value->get<bool>();
        return true;
    }

    bool take(const char* key, std::int64_t& number) const {
        const json* value = find(key);
        if (value == nullptr || !value->is_number_integer()) {
            return false;
        }
        constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
        if (value->is_number_unsigned() && value->get<std::uint64_t>() > largest) {
            return false;
        }
        number = value->get<std::int64_t>();
        return true;
    }

    bool take(const char* key, Date& date) const {
        const json* value = find(key);
        const auto read = value != nullptr && value->is_number() ? dateFromStored(value->get<double>()) : std::nullopt;
        date = read.value_or(date);
        return read.has_value();
    }

    bool take(const char* key, Uuid& id) const {
        std::string text;
        const auto read = take(key, text) ? Uuid::parse(text) : std::nullopt;
        id = read.value_or(id);
        return read.has_value();
    }

    // A list whose items `takeItem` reads one by one.
    template <typename Item, typename TakeItem>
    bool take(const char* key, std::vector<Item>& items, TakeItem takeItem) const {
        const json* value = find(key);
        if (value == nullptr || !value->is_array()) {
            return false;
        }
        items.resize(value->size());
        return std::equal(value->begin(), value->end(), items.begin(), takeItem);
    }

private:
    const json* find(const char* key) const {
        const auto found = object_.is_object() ? object_.find(key) : object_.end();
        return found == object_.end() ? nullptr : &*found;
    }

    const json& object_;
};

bool takeTitle(const json& value, std::string& title) {
    if (!value.is_string()) {
        return false;
    }
    title = value.get_ref<const std::string&>();
    return true;
}

bool takeMove(const json& value, HistoryEntry::Move& move) {
    const Fields fields(value);
    return fields.take("original", move.original) && fields.take("trashed", move.trashed) &&
           fields.take("size", move.size);
}

bool takeEntry(const json& value, HistoryEntry& entry) {
    const Fields fields(value);
    return fields.take("id", entry.id) && fields.take("date", entry.date) && fields.take("bytes", entry.bytes) &&
           fields.take("preview", entry.preview) && fields.take("titles", entry.titles, takeTitle) &&
           fields.take("moves", entry.moves, takeMove) && fields.take("snapshotsRemoved", entry.snapshotsRemoved) &&
           fields.take("undone", entry.undone);
}

// Watches the parsing for what the parser itself lets pass: nesting without end, and an object that says one thing
// twice.
class Watch {
public:
    bool fits(int depth, json::parse_event_t event, const json& value) {
        const auto level = static_cast<std::size_t>(depth);
        switch (event) {
            case json::parse_event_t::object_start:
            case json::parse_event_t::array_start:
                violated = violated || depth >= deepestLevel;
                if (!violated) {
                    keys_.resize(std::max(keys_.size(), level + 1));
                    keys_[level].clear();
                }
                break;
            case json::parse_event_t::key:
                violated = violated || !keys_[level - 1].insert(value.get_ref<const std::string&>()).second;
                break;
            default:
                break;
        }
        return !violated;
    }

    bool violated = false;

private:
    // The keys met in the open object of each level.
    std::vector<std::set<std::string>> keys_;
};

}  // namespace

std::string encodeHistory(const std::vector<HistoryEntry>& entries) {
    ordered_json list = ordered_json::array();
    for (const HistoryEntry& entry : entries) {
        list.push_back(encoded(entry));
    }
    return list.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

std::optional<std::vector<HistoryEntry>> decodeHistory(std::string_view bytes) {
    // The parser takes a NUL for the end of the text, whatever follows.
    if (bytes.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    Watch watch;
    const auto watching = [&](int depth, json::parse_event_t event, json& value) {
        return watch.fits(depth, event, value);
    };
    const json list = json::parse(bytes.begin(), bytes.end(), watching, /*allow_exceptions=*/false);
    if (watch.violated || !list.is_array()) {
        return std::nullopt;
    }
    std::vector<HistoryEntry> entries(list.size());
    if (!std::equal(list.begin(), list.end(), entries.begin(), takeEntry)) {
        return std::nullopt;
    }
    return entries;
}

}  // namespace vesk

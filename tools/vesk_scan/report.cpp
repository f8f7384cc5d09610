#include "vesk_scan/report.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>

#include "core/byte_count.h"
#include "platform/text.h"

namespace vesk {

namespace {

using Json = nlohmann::ordered_json;
using Row = std::array<std::string, 5>;

Row rowOf(const Card& card) {
    return {card.title, std::string(rawValue(card.bucket)),
            card.snapshotIDs.empty() ? byteCountText(card.size()) : "Size varies",
            std::to_string(static_cast<std::int64_t>(card.dormancyDays)),
            std::to_string(card.snapshotIDs.empty() ? card.entries.size() : card.snapshotIDs.size())};
}

void writeTable(std::ostream& out, const std::vector<Row>& rows) {
    std::array<std::size_t, 5> widths{};
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            widths[i] = std::max(widths[i], row[i].size());
        }
    }
    for (const Row& row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string padding(widths[i] - row[i].size(), ' ');
            const bool isText = i < 2;
            out << (i == 0 ? "" : "  ") << (isText ? row[i] + padding : padding + row[i]);
        }
        out << '\n';
    }
}

// JSON in which characters that are not safe to show are written as escapes. They stand in strings alone, so it says
// the same. A new line is an escape in a string already; outside it makes the layout.
std::string withEscapes(const std::string& json) {
    return replacingUnsafe(json, [](std::string_view character) {
        const std::string quoted = Json(character).dump(-1, ' ', true);
        return character == "\n" ? "\n" : quoted.substr(1, quoted.size() - 2);
    });
}

Json jsonOf(const Entry& entry) {
    return {
        {"path", decodedUtf8(entry.url.native())},
        {"name", decodedUtf8(entry.name)},
        {"size", entry.size},
        {"lastUsed", entry.lastUsed ? Json(unixSeconds(*entry.lastUsed)) : Json(nullptr)},
    };
}

Json jsonOf(const Card& card) {
    Json entries = Json::array();
    for (const Entry& entry : card.entries) {
        entries.push_back(jsonOf(entry));
    }
    return {
        {"id", card.id},
        {"title", card.title},
        {"symbol", card.symbol},
        {"bucket", card.bucket},
        {"confidence", card.confidence},
        {"risk", card.risk},
        {"summary", card.summary},
        {"why", card.why},
        {"dormancyDays", card.dormancyDays},
        {"priority", card.priority()},
        {"selected", card.selected},
        {"size", card.size()},
        {"snapshotIDs", card.snapshotIDs},
        {"entries", std::move(entries)},
    };
}

}  // namespace

std::string reportForPeople(const Store& store) {
    std::ostringstream out;
    if (store.cards().empty()) {
        out << "Nothing worth cleaning right now.\n";
    } else {
        std::vector<Row> rows = {{"Card", "Bucket", "Size", "Days unused", "Entries"}};
        std::transform(store.cards().begin(), store.cards().end(), std::back_inserter(rows), rowOf);
        writeTable(out, rows);
    }
    for (const std::string& area : store.blockedAreas()) {
        out << "Could not be read: " << area << '\n';
    }
    const Tracker::Counts counts = store.trackerCounts();
    out << "\nMeasured " << byteCountText(counts.bytes) << " in " << counts.files << " files. Safe "
        << byteCountText(store.safeBytes()) << ", to review " << byteCountText(store.smartBytes()) << "; "
        << byteCountText(store.free()) << " free of " << byteCountText(store.capacity()) << ".\n";
    return out.str();
}

std::string reportForPrograms(const Store& store) {
    Json cards = Json::array();
    for (const Card& card : store.cards()) {
        cards.push_back(jsonOf(card));
    }
    const Tracker::Counts counts = store.trackerCounts();
    const Json report = {
        {"cards", std::move(cards)},
        {"blockedAreas", store.blockedAreas()},
        {"files", counts.files},
        {"bytes", counts.bytes},
        {"capacity", store.capacity()},
        {"free", store.free()},
        {"safeBytes", store.safeBytes()},
        {"smartBytes", store.smartBytes()},
        {"personalBytes", store.personalBytes()},
    };
    return withEscapes(report.dump(2, ' ', false, Json::error_handler_t::replace)) + '\n';
}

std::string printable(std::string_view text) {
    const std::string quoted = withEscapes(Json(decodedUtf8(text)).dump());
    return quoted.substr(1, quoted.size() - 2);
}

}  // namespace vesk

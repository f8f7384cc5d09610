#include "rules/snapshot_listing.h"

#include <algorithm>
#include <ctime>

#include "platform/text.h"

namespace vesk::rules {

namespace {

constexpr std::string_view prefix = "com.apple.TimeMachine.";
constexpr std::string_view suffix = ".local";
// "yyyy-MM-dd-HHmmss" with a 0 for each digit.
constexpr std::string_view stampShape = "0000-00-00-000000";

// In one pass: a tool gone mad may write one line of many megabytes.
std::string without(std::string_view text, std::string_view part) {
    std::string rest;
    for (std::size_t place = text.find(part); place != std::string_view::npos; place = text.find(part)) {
        rest += text.substr(0, place);
        text.remove_prefix(place + part.size());
    }
    rest += text;
    return rest;
}

bool hasStampShape(std::string_view text) {
    const auto fits = [](char found, char wanted) {
        return wanted == '0' ? found >= '0' && found <= '9' : found == wanted;
    };
    return text.size() == stampShape.size() && std::equal(text.begin(), text.end(), stampShape.begin(), fits);
}

}  // namespace

std::vector<std::string> stampsIn(std::string_view output) {
    std::vector<std::string> stamps;
    while (!output.empty()) {
        const std::size_t end = std::min(output.find('\n'), output.size());
        const std::string_view line = trimmed(output.substr(0, end));
        output.remove_prefix(std::min(end + 1, output.size()));
        if (line.starts_with(prefix)) {
            stamps.push_back(without(without(line, prefix), suffix));
        }
    }
    return stamps;
}

std::optional<Date> dateOfStamp(const std::string& stamp) {
    if (!hasStampShape(stamp)) {
        return std::nullopt;
    }
    const auto number = [&](std::size_t place, std::size_t digits) { return std::stoi(stamp.substr(place, digits)); };
    std::tm wanted{};
    wanted.tm_year = number(0, 4) - 1900;
    wanted.tm_mon = number(5, 2) - 1;
    wanted.tm_mday = number(8, 2);
    wanted.tm_hour = number(11, 2);
    wanted.tm_min = number(13, 2);
    wanted.tm_sec = number(15, 2);
    wanted.tm_isdst = -1;
    std::tm found = wanted;
    const std::time_t seconds = std::mktime(&found);
    // mktime makes March 2 of a February 30, but no such day was ever written. An hour that the clocks skipped in
    // spring is let through.
    if (wanted.tm_hour > 23 || found.tm_mon != wanted.tm_mon || found.tm_mday != wanted.tm_mday ||
        found.tm_min != wanted.tm_min || found.tm_sec != wanted.tm_sec) {
        return std::nullopt;
    }
    return dateFromUnix(seconds, 0);
}

}  // namespace vesk::rules

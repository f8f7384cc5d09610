#include "platform/trash_info.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>

namespace vesk {

namespace {

constexpr std::string_view groupLine = "[Trash Info]";
constexpr std::string_view pathKey = "Path=";
constexpr std::string_view deletionKey = "DeletionDate=";
constexpr const char* deletionFormat = "%Y-%m-%dT%H:%M:%S";
constexpr std::string_view hexDigits = "0123456789ABCDEF";

// What needs no escape in a path (RFC 3986: unreserved characters, and the slash between names).
bool isPlain(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("-._~/").find(c) != std::string_view::npos;
}

int hexValue(char digit) {
    const char upper = digit >= 'a' && digit <= 'f' ? static_cast<char>(digit - 'a' + 'A') : digit;
    const std::size_t value = hexDigits.find(upper);
    return value == std::string_view::npos ? -1 : static_cast<int>(value);
}

std::string percentEncoded(std::string_view bytes) {
    std::string text;
    for (const char c : bytes) {
        if (isPlain(c)) {
            text += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        text += '%';
        text += hexDigits[byte >> 4U];
        text += hexDigits[byte & 0x0FU];
    }
    return text;
}

// An escape that is none stands for itself.
std::string percentDecoded(std::string_view text) {
    std::string bytes;
    while (!text.empty()) {
        const int high = text[0] == '%' && text.size() > 2 ? hexValue(text[1]) : -1;
        const int low = high >= 0 ? hexValue(text[2]) : -1;
        if (low >= 0) {
            bytes += static_cast<char>(high * 16 + low);
            text.remove_prefix(3);
        } else {
            bytes += text[0];
            text.remove_prefix(1);
        }
    }
    return bytes;
}

std::string localTime(Date date) {
    const std::time_t seconds =
        std::chrono::system_clock::to_time_t(std::chrono::time_point_cast<std::chrono::system_clock::duration>(date));
    std::tm local{};
    localtime_r(&seconds, &local);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), deletionFormat, &local);
    return {text.data(), length};
}

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

// What follows the first line that begins with the key.
std::optional<std::string_view> valueIn(std::string_view text, std::string_view key) {
    if (takeLine(text) != groupLine) {
        return std::nullopt;
    }
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.starts_with(key)) {
            return line.substr(key.size());
        }
    }
    return std::nullopt;
}

bool haveSameClockFace(const std::tm& first, const std::tm& second) {
    return first.tm_year == second.tm_year && first.tm_yday == second.tm_yday && first.tm_hour == second.tm_hour &&
           first.tm_min == second.tm_min && first.tm_sec == second.tm_sec;
}

// The first moment at which clocks showed this time.
std::optional<std::time_t> firstMoment(std::tm local) {
    local.tm_isdst = -1;
    errno = 0;
    const std::time_t moment = std::mktime(&local);
    if (moment == -1 && errno != 0) {
        return std::nullopt;
    }
    // Clocks go back by an hour; on Lord Howe Island by half of one, and by two at a station in Antarctica.
    for (const std::time_t step : {7200, 3600, 1800}) {
        const std::time_t earlier = moment - step;
        std::tm shown{};
        if (localtime_r(&earlier, &shown) != nullptr && haveSameClockFace(shown, local)) {
            return earlier;
        }
    }
    return moment;
}

}  // namespace

std::string trashInfoText(std::string_view place, Date deleted) {
    std::string text(groupLine);
    text += "\n";
    text += pathKey;
    text += percentEncoded(place);
    text += "\n";
    text += deletionKey;
    text += localTime(deleted);
    text += "\n";
    return text;
}

std::optional<std::string> placeInTrashInfo(std::string_view text) {
    const std::optional<std::string_view> place = valueIn(text, pathKey);
    return place ? std::optional(percentDecoded(*place)) : std::nullopt;
}

std::optional<Date> deletionInTrashInfo(std::string_view text) {
    const std::string value(valueIn(text, deletionKey).value_or(""));
    std::tm local{};
    const char* const end = strptime(value.c_str(), deletionFormat, &local);
    const std::optional<std::time_t> moment = end == value.c_str() + value.size() ? firstMoment(local) : std::nullopt;
    return moment ? std::optional(dateFromUnix(*moment, 0)) : std::nullopt;
}

}  // namespace vesk

#include "platform/trash/trash_info.h"

#include <array>
#include <chrono>
#include <ctime>

namespace vesk {

namespace {

constexpr std::string_view groupLine = "[Trash Info]";
constexpr std::string_view pathKey = "Path=";
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
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &local);
    return {text.data(), length};
}

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return line;
}

}  // namespace

std::string trashInfoText(std::string_view place, Date deleted) {
    std::string text(groupLine);
    text += "\n";
    text += pathKey;
    text += percentEncoded(place);
    text += "\nDeletionDate=";
    text += localTime(deleted);
    text += "\n";
    return text;
}

std::optional<std::string> placeInTrashInfo(std::string_view text) {
    if (takeLine(text) != groupLine) {
        return std::nullopt;
    }
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.starts_with(pathKey)) {
            return percentDecoded(line.substr(pathKey.size()));
        }
    }
    return std::nullopt;
}

}  // namespace vesk

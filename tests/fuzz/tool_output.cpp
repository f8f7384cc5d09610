// The backup tool's output: any bytes become text, and the stamps in it are found line by line.

#include <algorithm>
#include <cmath>
#include <ctime>

#include "fuzz.h"
#include "platform/text.h"
#include "rules/snapshot_listing.h"

namespace {

const bool timeZoneSet = [] { return setenv("TZ", "UTC", 1) == 0; }();

std::string replacedIn(std::string text, const std::string& part) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at)) {
        text.erase(at, part.size());
    }
    return text;
}

// The stamps in a text, found in another way: by erasing.
std::vector<std::string> expectedStamps(std::string text) {
    std::vector<std::string> stamps;
    text += '\n';
    for (std::size_t start = 0, end = 0; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        std::string line = text.substr(start, end - start);
        while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) {
            line.erase(0, 1);
        }
        while (!line.empty() && (line.back() == ' ' || line.back() == '\t')) {
            line.pop_back();
        }
        if (line.rfind("com.apple.TimeMachine.", 0) == 0) {
            stamps.push_back(replacedIn(replacedIn(line, "com.apple.TimeMachine."), ".local"));
        }
    }
    return stamps;
}

// A date read from a stamp is written as that stamp again.
void isDateOf(vesk::Date date, const std::string& stamp) {
    // In the far past and future, a double is precise to about a millionth of a second.
    const auto seconds = static_cast<std::time_t>(std::llround(vesk::unixSeconds(date)));
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    char text[64];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d-%H%M%S", &parts);
    // Earlier and later years are outside a date's range.
    const int year = std::stoi(stamp.substr(0, 4));
    VESK_HOLDS(year < 1700 || year > 2200 || std::string(text, length) == stamp);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    VESK_HOLDS(timeZoneSet);
    const std::string bytes = vesk::testing::bytesOf(data, size);
    const std::string text = vesk::decodedUtf8(bytes);
    VESK_HOLDS(vesk::isUtf8(text) && vesk::decodedUtf8(text) == text);
    VESK_HOLDS(vesk::isUtf8(bytes) == (text == bytes));
    VESK_HOLDS(std::count(text.begin(), text.end(), '\n') == std::count(bytes.begin(), bytes.end(), '\n'));

    const std::vector<std::string> stamps = vesk::rules::stampsIn(text);
    VESK_HOLDS(stamps == expectedStamps(text));
    for (const std::string& stamp : stamps) {
        if (const auto date = vesk::rules::dateOfStamp(stamp)) {
            isDateOf(*date, stamp);
        }
    }
    if (const auto date = vesk::rules::dateOfStamp(bytes)) {
        isDateOf(*date, bytes);
    }
    return 0;
}

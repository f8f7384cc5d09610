#include "core/byte_count.h"

#include <array>
#include <string_view>

namespace vesk {

namespace {

struct Unit {
    std::string_view name;
    std::uint64_t bytes;
    // The most decimal places shown.
    int places;
};

constexpr std::array<Unit, 6> units = {{
    {"KB", 1'000U, 0},
    {"MB", 1'000'000U, 1},
    {"GB", 1'000'000'000U, 2},
    {"TB", 1'000'000'000'000U, 2},
    {"PB", 1'000'000'000'000'000U, 2},
    {"EB", 1'000'000'000'000'000'000U, 2},
}};

constexpr std::uint64_t powerOfTen(int exponent) {
    std::uint64_t power = 1;
    for (int i = 0; i < exponent; ++i) {
        power *= 10;
    }
    return power;
}

std::uint64_t dividedTiesToEven(std::uint64_t dividend, std::uint64_t divisor) {
    const std::uint64_t quotient = dividend / divisor;
    const std::uint64_t twice = 2 * (dividend % divisor);
    const bool up = twice > divisor || (twice == divisor && quotient % 2 == 1);
    return quotient + (up ? 1 : 0);
}

// The amount in the unit's smallest shown step (tenths of a MB, hundredths of a GB).
std::uint64_t steps(std::uint64_t bytes, const Unit& unit) {
    return dividedTiesToEven(bytes, unit.bytes / powerOfTen(unit.places));
}

std::string decimal(std::uint64_t steps, int places) {
    while (places > 0 && steps % 10 == 0) {
        steps /= 10;
        --places;
    }
    const std::uint64_t whole = powerOfTen(places);
    std::string text = std::to_string(steps / whole);
    if (places > 0) {
        const std::string fraction = std::to_string(steps % whole);
        text += '.' + std::string(static_cast<std::size_t>(places) - fraction.size(), '0') + fraction;
    }
    return text;
}

std::string magnitudeText(std::uint64_t bytes) {
    constexpr std::uint64_t next = 1000;
    if (bytes == 1) {
        return "1 byte";
    }
    if (bytes < next) {
        return std::to_string(bytes) + " bytes";
    }
    std::size_t i = 0;
    // A figure that rounds to 1,000 of a unit is shown as 1 of the next.
    while (i + 1 < units.size() && steps(bytes, units[i]) >= next * powerOfTen(units[i].places)) {
        ++i;
    }
    return decimal(steps(bytes, units[i]), units[i].places) + ' ' + std::string(units[i].name);
}

}  // namespace

std::string byteCountText(std::int64_t bytes) {
    if (bytes == 0) {
        return "Zero KB";
    }
    if (bytes < 0) {
        return '-' + magnitudeText(0U - static_cast<std::uint64_t>(bytes));
    }
    return magnitudeText(static_cast<std::uint64_t>(bytes));
}

}  // namespace vesk

#include "core/uuid.h"

#include <random>

namespace vesk {

namespace {

constexpr std::size_t textLength = 36;

bool isHyphenPlace(std::size_t place) {
    return place == 8 || place == 13 || place == 18 || place == 23;
}

int digitValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    if (digit >= 'a' && digit <= 'f') {
        return digit - 'a' + 10;
    }
    if (digit >= 'A' && digit <= 'F') {
        return digit - 'A' + 10;
    }
    return -1;
}

}  // namespace

Uuid Uuid::random() {
    // One generator a thread, seeded by the system, so that threads need no lock between them.
    thread_local std::mt19937_64 generator = [] {
        std::random_device device;
        std::seed_seq seed{device(), device(), device(), device(), device(), device(), device(), device()};
        return std::mt19937_64(seed);
    }();
    Uuid uuid;
    for (std::size_t half = 0; half < 2; ++half) {
        const std::uint64_t value = generator();
        for (std::size_t i = 0; i < 8; ++i) {
            uuid.bytes[half * 8 + i] = static_cast<std::uint8_t>(value >> (8 * i));
        }
    }
    uuid.bytes[6] = static_cast<std::uint8_t>((uuid.bytes[6] & 0x0F) | 0x40);
    uuid.bytes[8] = static_cast<std::uint8_t>((uuid.bytes[8] & 0x3F) | 0x80);
    return uuid;
}

std::optional<Uuid> Uuid::parse(std::string_view text) {
    if (text.size() != textLength) {
        return std::nullopt;
    }
    Uuid uuid;
    std::size_t digits = 0;
    for (std::size_t i = 0; i < textLength; ++i) {
        if (isHyphenPlace(i)) {
            if (text[i] != '-') {
                return std::nullopt;
            }
            continue;
        }
        const int value = digitValue(text[i]);
        if (value < 0) {
            return std::nullopt;
        }
        std::uint8_t& byte = uuid.bytes[digits / 2];
        byte = static_cast<std::uint8_t>(byte * 16 + value);
        ++digits;
    }
    return uuid;
}

std::string Uuid::text() const {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    result.reserve(textLength);
    for (const std::uint8_t byte : bytes) {
        if (isHyphenPlace(result.size())) {
            result += '-';
        }
        result += digits[byte >> 4U];
        result += digits[byte & 0x0FU];
    }
    return result;
}

}  // namespace vesk

std::size_t std::hash<vesk::Uuid>::operator()(const vesk::Uuid& uuid) const noexcept {
    return std::hash<std::string_view>()(
        std::string_view(reinterpret_cast<const char*>(uuid.bytes.data()), uuid.bytes.size()));
}

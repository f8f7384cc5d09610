// Universally unique identifiers (RFC 9562). Plain values; the functions are callable from any thread.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

struct Uuid {
    std::array<std::uint8_t, 16> bytes{};

    /// A new random identifier (version 4).
    static Uuid random();

    /// Parses 8-4-4-4-12 hexadecimal digits of either case; absent for any other text.
    static std::optional<Uuid> parse(std::string_view text);

    /// The canonical text: 36 characters, upper-case digits.
    std::string text() const;

    friend bool operator==(const Uuid&, const Uuid&) = default;
};

}  // namespace vesk

template <>
struct std::hash<vesk::Uuid> {
    std::size_t operator()(const vesk::Uuid& uuid) const noexcept;
};

// How freely the things of a card can be removed.
#pragma once

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vesk {

enum class Bucket {
    /// Can be removed without loss; the app or system rebuilds it.
    safe,
    /// Worth reviewing; removal may cost a re-download, a rebuild or saved data.
    smart,
    /// The user's own material.
    personal,
};

/// The bucket's name in documents: "safe", "smart" or "personal".
std::string_view rawValue(Bucket bucket);

/// The bucket of that name; absent for any other text (names are compared exactly).
std::optional<Bucket> bucketFromRawValue(std::string_view rawValue);

/// Writes a bucket into a JSON document as its bare raw value. (nlohmann-json finds this pair by itself.)
template <typename Json>
void to_json(Json& json, const Bucket& bucket) {
    json = std::string(rawValue(bucket));
}

/// Reads a bucket from its bare raw value; throws std::invalid_argument for any other text, and what the library
/// throws when the value is no text.
template <typename Json>
void from_json(const Json& json, Bucket& bucket) {
    const std::optional<Bucket> read = bucketFromRawValue(json.template get<std::string>());
    if (!read) {
        throw std::invalid_argument("not a bucket");
    }
    bucket = *read;
}

}  // namespace vesk

template <>
struct std::hash<vesk::Bucket> {
    std::size_t operator()(vesk::Bucket bucket) const noexcept {
        return std::hash<std::string_view>()(vesk::rawValue(bucket));
    }
};

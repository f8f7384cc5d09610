// How freely a card's items can be removed.
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
    /// Worth reviewing; removal may cost a download, a rebuild or saved data.
    smart,
    /// The user's own files.
    personal,
};

/// The bucket's name in documents: "safe", "smart" or "personal".
std::string_view rawValue(Bucket bucket);

/// The bucket with that name; absent for any other text (names are compared exactly).
std::optional<Bucket> bucketFromRawValue(std::string_view rawValue);

/// Writes a bucket to JSON as its raw value. (nlohmann-json finds this pair by itself.)
template <typename Json>
void to_json(Json& json, const Bucket& bucket) {
    json = std::string(rawValue(bucket));
}

/// Reads a bucket from its raw value; throws std::invalid_argument for any other text, and the library's exception if
/// the value is not a string.
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

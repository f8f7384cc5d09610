#include "core/bucket.h"

#include <array>

namespace vesk {

namespace {

constexpr std::array<std::string_view, 3> rawValues = {"safe", "smart", "personal"};

}  // namespace

std::string_view rawValue(Bucket bucket) {
    return rawValues[static_cast<std::size_t>(bucket)];
}

std::optional<Bucket> bucketFromRawValue(std::string_view text) {
    for (std::size_t i = 0; i < rawValues.size(); ++i) {
        if (rawValues[i] == text) {
            return static_cast<Bucket>(i);
        }
    }
    return std::nullopt;
}

}  // namespace vesk

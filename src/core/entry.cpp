#include "core/entry.h"

namespace {

void mix(std::size_t& seed, std::size_t value) {
    // The golden ratio in 64 bits spreads nearby values over all bits.
    seed ^= value + 0x9E3779B97F4A7C15U + (seed << 6U) + (seed >> 2U);
}

}  // namespace

std::size_t std::hash<vesk::Entry>::operator()(const vesk::Entry& entry) const noexcept {
    std::size_t seed = 0;
    mix(seed, std::hash<vesk::Uuid>()(entry.id));
    mix(seed, std::filesystem::hash_value(entry.url));
    mix(seed, std::hash<std::string>()(entry.name));
    mix(seed, std::hash<std::int64_t>()(entry.size));
    mix(seed, entry.lastUsed.has_value() ? 1 : 0);
    if (entry.lastUsed) {
        mix(seed, std::hash<std::int64_t>()(entry.lastUsed->time_since_epoch().count()));
    }
    return seed;
}

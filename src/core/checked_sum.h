// Sums of sizes and counts that end the program rather than overflow: Vesk shows true figures or none. Callable from
// any thread.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace vesk {

[[noreturn]] inline void endAtOverflow() {
    std::fputs("vesk: a sum of sizes does not fit 64 bits\n", stderr);
    std::abort();
}

/// a + b, in bytes or counts; ends the program with a message if the sum does not fit 64 bits.
inline std::int64_t checkedSum(std::int64_t a, std::int64_t b) {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(a, b, &sum)) {
        endAtOverflow();
    }
    return sum;
}

/// a - b in the same way.
inline std::int64_t checkedDifference(std::int64_t a, std::int64_t b) {
    std::int64_t difference = 0;
    if (__builtin_sub_overflow(a, b, &difference)) {
        endAtOverflow();
    }
    return difference;
}

/// Adds `amount` to `total` in the same way.
inline void checkedAdd(std::int64_t& total, std::int64_t amount) {
    total = checkedSum(total, amount);
}

}  // namespace vesk

// What names the file system of the tests can hold: APFS holds only UTF-8, and takes names for one that differ in case
// or Unicode form alone. Tests of other names ask first, and skip with that reason.
#pragma once

#include <string>
#include <vector>

namespace vesk::testing {

/// Those of the names that can be made beside each other, in their order; each at most 255 bytes, without a slash.
/// Makes and removes them in a folder of its own.
std::vector<std::string> namesHeld(const std::vector<std::string>& names);

/// Whether all of them can.
bool holdsNames(const std::vector<std::string>& names);

}  // namespace vesk::testing

/// Skips the test where these names cannot be held beside each other.
#define VESK_NEEDS_NAMES(...)                                                                         \
    if (!::vesk::testing::holdsNames({__VA_ARGS__})) {                                                \
        GTEST_SKIP() << "this file system cannot hold names that this test needs (see file_names.h)"; \
    }                                                                                                 \
    static_assert(true)

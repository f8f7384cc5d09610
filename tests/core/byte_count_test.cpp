#include "core/byte_count.h"

#include <gtest/gtest.h>

#include <limits>

namespace vesk {
namespace {

TEST(ByteCountText, ShowsAsManyDigitsAsTheUnitAllows) {
    const struct {
        std::int64_t bytes;
        const char* text;
    } cases[] = {
        {0, "Zero KB"},
        {1, "1 byte"},
        {2, "2 bytes"},
        {999, "999 bytes"},
        {1000, "1 KB"},
        {1023, "1 KB"},
        {1024, "1 KB"},
        {1500, "2 KB"},
        {2500, "2 KB"},
        {5500, "6 KB"},
        {11999, "12 KB"},
        {225935, "226 KB"},
        {999499, "999 KB"},
        {999500, "1 MB"},
        {1250000, "1.2 MB"},
        {5500000, "5.5 MB"},
        {10485760, "10.5 MB"},
        {12345678, "12.3 MB"},
        {123456789, "123.5 MB"},
        {999900000, "999.9 MB"},
        {999949999, "999.9 MB"},
        {999950000, "1 GB"},
        {1234567898, "1.23 GB"},
        {12345678987, "12.35 GB"},
        {999994999999, "999.99 GB"},
        {999995000000, "1 TB"},
        {1000000000000, "1 TB"},
        {std::numeric_limits<std::int64_t>::max(), "9.22 EB"},
        {std::numeric_limits<std::int64_t>::min(), "-9.22 EB"},
        {-1, "-1 byte"},
        {-1234567898, "-1.23 GB"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(byteCountText(c.bytes), c.text) << c.bytes;
    }
}

}  // namespace
}  // namespace vesk

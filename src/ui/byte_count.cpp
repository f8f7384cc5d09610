#include "ui/byte_count.h"

#include <cmath>
#include <limits>

#include "core/byte_count.h"

namespace vesk {

QString ByteCount::text(double bytes) {
    constexpr double beyond = 9223372036854775808.0;  // 2^63, just above the largest 64-bit count
    std::int64_t count = 0;
    if (bytes >= beyond) {
        count = std::numeric_limits<std::int64_t>::max();
    } else if (bytes <= -beyond) {
        count = std::numeric_limits<std::int64_t>::min();
    } else if (!std::isnan(bytes)) {
        count = static_cast<std::int64_t>(bytes);
    }
    return QString::fromStdString(byteCountText(count));
}

}  // namespace vesk

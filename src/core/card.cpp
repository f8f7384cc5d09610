#include "core/card.h"

#include <algorithm>

#include "core/checked_sum.h"

namespace vesk {

namespace {

constexpr double bytesPerMiB = 1'048'576.0;
constexpr double leastRisk = 0.1;

}  // namespace

std::int64_t Card::size() const {
    std::int64_t total = 0;
    for (const Entry& entry : entries) {
        checkedAdd(total, entry.size);
    }
    return total;
}

double Card::priority() const {
    const double sizeMiB = static_cast<double>(size()) / bytesPerMiB;
    return confidence * std::max(dormancyDays, leastDormancyDays) * sizeMiB / std::max(risk, leastRisk);
}

}  // namespace vesk

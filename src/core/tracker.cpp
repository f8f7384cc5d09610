#include "core/tracker.h"

#include "core/checked_sum.h"

namespace vesk {

void Tracker::add(Counts counts) {
    const std::lock_guard lock(lock_);
    checkedAdd(counts_.bytes, counts.bytes);
    checkedAdd(counts_.files, counts.files);
    ++updates_;
}

Tracker::Counts Tracker::counts() const {
    const std::lock_guard lock(lock_);
    return counts_;
}

std::int64_t Tracker::updates() const {
    const std::lock_guard lock(lock_);
    return updates_;
}

}  // namespace vesk

#include "platform/date.h"

#include <atomic>

namespace vesk {

namespace {

constexpr std::int64_t nanosecondsPerSecond = 1'000'000'000;

std::atomic<Date (*)()> replacedClock = nullptr;

}  // namespace

Date now() {
    if (Date(*clock)() = replacedClock.load()) {
        return clock();
    }
    return std::chrono::time_point_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now());
}

void setClock(Date (*clock)()) {
    replacedClock.store(clock);
}

Date dateFromUnix(std::int64_t seconds, std::int64_t nanoseconds) {
    std::int64_t count = 0;
    if (__builtin_mul_overflow(seconds, nanosecondsPerSecond, &count) ||
        __builtin_add_overflow(count, nanoseconds, &count)) {
        return seconds < 0 ? Date::min() : Date::max();
    }
    return Date(std::chrono::nanoseconds(count));
}

double secondsBetween(Date earlier, Date later) {
    return unixSeconds(later) - unixSeconds(earlier);
}

double unixSeconds(Date date) {
    return static_cast<double>(date.time_since_epoch().count()) / static_cast<double>(nanosecondsPerSecond);
}

}  // namespace vesk

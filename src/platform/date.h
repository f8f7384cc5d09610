// Points in time, as the file system and the clock report them. Used by every layer, on any thread.
#pragma once

#include <chrono>
#include <cstdint>

namespace vesk {

/// An absolute point in time, in nanoseconds since 1970-01-01 00:00:00 UTC (years 1677 to 2262).
using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

/// The current time. Rules take it once, when they start.
Date now();

/// Makes `now` return what `clock` returns, for tests of cut-offs; nullptr restores the system's clock.
/// Call it only while no scan is running.
void setClock(Date (*clock)());

/// The date of a kernel time stamp. File systems can store years that nanoseconds in 64 bits cannot: a time outside
/// the range of `Date` becomes the nearest date in range.
Date dateFromUnix(std::int64_t seconds, std::int64_t nanoseconds);

/// Seconds between two dates, with fraction; negative if `later` is earlier. Never overflows.
double secondsBetween(Date earlier, Date later);

/// Seconds since 1970, with fraction.
double unixSeconds(Date date);

}  // namespace vesk

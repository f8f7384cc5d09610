// Points in time, as the file system and the clock give them.
// Called from every layer, on any thread.
#pragma once

#include <chrono>
#include <cstdint>

namespace vesk {

/// An absolute point in time, in nanoseconds since 1970-01-01 00:00:00 UTC (years 1677 to 2262).
using Date = std::chrono::sys_time<std::chrono::nanoseconds>;

/// The current time. Rules take it once, when they start.
Date now();

/// Makes `now` answer what `clock` answers, for tests of cut-offs; nullptr goes back to the system's clock.
/// Call it while no scan runs.
void setClock(Date (*clock)());

/// The date of a time stamp as the kernel gives it. A time outside what `Date` holds becomes the nearest
/// one that it does hold, since file systems can store years that nanoseconds in 64 bits cannot.
Date dateFromUnix(std::int64_t seconds, std::int64_t nanoseconds);

/// Seconds between two dates, with fraction; negative when `later` is the earlier one. Never overflows.
double secondsBetween(Date earlier, Date later);

/// Seconds since 1970 with fraction.
double unixSeconds(Date date);

}  // namespace vesk

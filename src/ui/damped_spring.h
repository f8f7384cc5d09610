// The motion of an under-damped spring, in closed form. Plain values; callable from any thread.
#pragma once

namespace vesk {

/// A spring described as interface designers do: the time of one undamped swing and how much of the critical damping
/// it has.
struct DampedSpring {
    /// Seconds of one undamped swing; above 0.
    double response = 0.5;
    /// Share of the critical damping; between 0 and 1, neither included.
    double dampingFraction = 0.8;

    /// Where a mass on the spring is, relative to the place it is drawn to, and how fast it moves (per second).
    struct Motion {
        double displacement = 0;
        double velocity = 0;
    };

    /// The motion `seconds` after it was `start`.
    Motion after(double seconds, Motion start) const;

    /// Seconds until a motion from `start` stays within `tolerance` of its rest for good (an upper bound).
    double settlingTime(Motion start, double tolerance) const;
};

}  // namespace vesk

// The motion of an under-damped spring, in closed form. Plain values; callable from any thread.
#pragma once

namespace vesk {

/// A spring as interface designers describe it: by the period of its undamped oscillation and its damping ratio.
struct DampedSpring {
    /// The period of the undamped oscillation, in seconds; above 0.
    double response = 0.5;
    /// The damping ratio; between 0 and 1, both excluded.
    double dampingFraction = 0.8;

    /// The displacement of a mass from its resting place, and its velocity per second.
    struct Motion {
        double displacement = 0;
        double velocity = 0;
    };

    /// The state `seconds` after `start`.
    Motion after(double seconds, Motion start) const;

    /// An upper bound of the seconds until a motion from `start` stays within `tolerance` of its resting place.
    double settlingTime(Motion start, double tolerance) const;
};

}  // namespace vesk

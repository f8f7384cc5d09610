#include "ui/list_spring.h"

#include <cmath>

#include "ui/damped_spring.h"

namespace vesk {

namespace {

constexpr DampedSpring rowSpring{0.9, 0.65};
constexpr DampedSpring::Motion rowStart{-1, 0};

double secondsToRest() {
    constexpr double tolerance = 0.001;
    static const double seconds = rowSpring.settlingTime(rowStart, tolerance);
    return seconds;
}

double rowProgress(double share) {
    // It ends where it is drawn to, however little is left of the swing.
    return share >= 1 ? 1 : 1 + rowSpring.after(share * secondsToRest(), rowStart).displacement;
}

}  // namespace

QEasingCurve ListSpring::easing() {
    QEasingCurve curve;
    curve.setCustomType(rowProgress);
    return curve;
}

int ListSpring::duration() {
    return static_cast<int>(std::lround(secondsToRest() * 1000));
}

}  // namespace vesk

#include "ui/spring_value.h"

#include <cmath>

#include "ui/motion.h"

namespace vesk {

SpringValue::SpringValue(QObject* parent) : QAbstractAnimation(parent) {
    connect(&Motion::instance(), &Motion::reducedChanged, this, [this] {
        if (Motion::instance().reduced()) {
            rest();
        }
    });
}

void SpringValue::setTarget(double target) {
    if (target == target_) {
        return;
    }
    target_ = target;
    Q_EMIT targetChanged();
    if (!complete_ || Motion::instance().reduced()) {
        rest();
        return;
    }
    start_ = {value_ - target_, velocity_};
    // A thousandth of the distance is less than a pixel for everything that springs in the window.
    constexpr double tolerance = 0.001;
    settlingTime_ = spring_.settlingTime(start_, tolerance * (std::abs(start_.displacement) + tolerance));
    stop();
    start();
}

void SpringValue::setResponse(double seconds) {
    if (seconds != spring_.response && seconds > 0) {
        spring_.response = seconds;
        Q_EMIT responseChanged();
    }
}

void SpringValue::setDampingFraction(double fraction) {
    if (fraction != spring_.dampingFraction && fraction > 0 && fraction < 1) {
        spring_.dampingFraction = fraction;
        Q_EMIT dampingFractionChanged();
    }
}

void SpringValue::updateCurrentTime(int milliseconds) {
    const double seconds = milliseconds / 1000.0;
    if (seconds >= settlingTime_) {
        rest();
        return;
    }
    const DampedSpring::Motion motion = spring_.after(seconds, start_);
    velocity_ = motion.velocity;
    setValue(target_ + motion.displacement);
}

void SpringValue::setValue(double value) {
    if (value != value_) {
        value_ = value;
        Q_EMIT valueChanged();
    }
}

void SpringValue::rest() {
    velocity_ = 0;
    stop();
    setValue(target_);
}

}  // namespace vesk

#include "ui/damped_spring.h"

#include <cmath>
#include <numbers>

namespace vesk {

namespace {

// The motion is e^(-decay t) (a cos(swing t) + b sin(swing t)).
struct Form {
    double decay;
    double swing;
    double a;
    double b;

    Form(const DampedSpring& spring, DampedSpring::Motion start) {
        const double omega = 2 * std::numbers::pi / spring.response;
        decay = spring.dampingFraction * omega;
        swing = omega * std::sqrt(1 - spring.dampingFraction * spring.dampingFraction);
        a = start.displacement;
        b = (start.velocity + decay * start.displacement) / swing;
    }
};

}  // namespace

DampedSpring::Motion DampedSpring::after(double seconds, Motion start) const {
    const Form form(*this, start);
    const double envelope = std::exp(-form.decay * seconds);
    const double cosine = std::cos(form.swing * seconds);
    const double sine = std::sin(form.swing * seconds);
    const double along = form.a * cosine + form.b * sine;
    const double across = form.b * cosine - form.a * sine;
    return {envelope * along, envelope * (form.swing * across - form.decay * along)};
}

double DampedSpring::settlingTime(Motion start, double tolerance) const {
    const Form form(*this, start);
    const double amplitude = std::hypot(form.a, form.b);
    return amplitude <= tolerance ? 0 : std::log(amplitude / tolerance) / form.decay;
}

}  // namespace vesk

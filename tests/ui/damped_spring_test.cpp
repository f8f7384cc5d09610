#include "ui/damped_spring.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

namespace vesk {
namespace {

// The springs that the window uses.
const std::vector<DampedSpring> springs = {{0.9, 0.6}, {0.9, 0.65}, {0.5, 0.8}, {0.55, 0.5}, {0.3, 0.5}};

// Integrates the equation of motion x'' = -2 d w x' - w^2 x in steps of a microsecond.
DampedSpring::Motion integrated(const DampedSpring& spring, double seconds, DampedSpring::Motion motion) {
    const double omega = 2 * std::numbers::pi / spring.response;
    constexpr double step = 1e-6;
    for (double time = 0; time < seconds; time += step) {
        const double force =
            -2 * spring.dampingFraction * omega * motion.velocity - omega * omega * motion.displacement;
        motion.velocity += force * step;
        motion.displacement += motion.velocity * step;
    }
    return motion;
}

TEST(DampedSpring, FollowsItsEquationOfMotion) {
    const DampedSpring::Motion start{-1, 2.5};
    for (const DampedSpring& spring : springs) {
        for (const double seconds : {0.05, 0.2, 0.5, 1.0}) {
            const DampedSpring::Motion expected = integrated(spring, seconds, start);
            const DampedSpring::Motion actual = spring.after(seconds, start);
            EXPECT_NEAR(actual.displacement, expected.displacement, 0.001) << spring.response << " at " << seconds;
            EXPECT_NEAR(actual.velocity, expected.velocity, 0.01) << spring.response << " at " << seconds;
        }
    }
}

TEST(DampedSpring, BeginsWhereItIsStarted) {
    const DampedSpring::Motion motion = DampedSpring{0.9, 0.6}.after(0, {0.25, -3});
    EXPECT_DOUBLE_EQ(motion.displacement, 0.25);
    EXPECT_DOUBLE_EQ(motion.velocity, -3);
}

TEST(DampedSpring, GoesOnAsIfItHadNotBeenCutInTwo) {
    const DampedSpring spring{0.55, 0.5};
    const DampedSpring::Motion start{-1, 0};
    const DampedSpring::Motion whole = spring.after(0.4, start);
    const DampedSpring::Motion halves = spring.after(0.15, spring.after(0.25, start));
    EXPECT_NEAR(whole.displacement, halves.displacement, 1e-12);
    EXPECT_NEAR(whole.velocity, halves.velocity, 1e-12);
}

TEST(DampedSpring, HasSettledOnceItSaysSo) {
    for (const DampedSpring& spring : springs) {
        const double settled = spring.settlingTime({-1, 0}, 0.001);
        EXPECT_LT(settled, 2);
        for (double time = settled; time < settled + 1; time += 0.001) {
            ASSERT_LE(std::abs(spring.after(time, {-1, 0}).displacement), 0.001) << spring.response;
        }
    }
    EXPECT_EQ(springs[0].settlingTime({0, 0}, 0.001), 0);
}

}  // namespace
}  // namespace vesk

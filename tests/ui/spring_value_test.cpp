#include "ui/spring_value.h"

#include <gtest/gtest.h>

#include <QTest>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "ui/motion.h"

namespace vesk {
namespace {

class SpringValueTest : public ::testing::Test {
protected:
    SpringValueTest() { Motion::instance().setReduced(false); }
    ~SpringValueTest() override { Motion::instance().setReduced(false); }
};

bool settles(const SpringValue& value) {
    return QTest::qWaitFor([&] { return value.state() == QAbstractAnimation::Stopped; }, 5000);
}

TEST_F(SpringValueTest, FollowsTheClosedFormWithinOnePercent) {
    for (const DampedSpring& spring : {DampedSpring{0.9, 0.6}, DampedSpring{0.5, 0.8}, DampedSpring{0.55, 0.5}}) {
        SpringValue value;
        value.setResponse(spring.response);
        value.setDampingFraction(spring.dampingFraction);
        value.setTarget(1);
        value.pause();  // from here on, the test advances its time
        for (int time = 0; value.state() != QAbstractAnimation::Stopped; time += 8) {
            ASSERT_LT(time, 2000);
            value.setCurrentTime(time);
            ASSERT_NEAR(value.value(), 1 + spring.after(time / 1000.0, {-1, 0}).displacement, 0.01) << time;
        }
        EXPECT_DOUBLE_EQ(value.value(), 1);
    }
}

TEST_F(SpringValueTest, OvershootsAsAnUnderDampedSpringDoes) {
    SpringValue value;
    value.setResponse(0.55);
    value.setDampingFraction(0.5);
    value.setTarget(1);
    value.pause();
    double highest = 0;
    for (int time = 0; time < 1000; ++time) {
        value.setCurrentTime(time);
        highest = std::max(highest, value.value());
    }
    EXPECT_NEAR(highest, 1 + std::exp(-0.5 * std::numbers::pi / std::sqrt(0.75)), 0.001);
}

TEST_F(SpringValueTest, KeepsPlaceAndSpeedWhenTheTargetChangesOnTheWay) {
    SpringValue value;
    value.setTarget(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return value.value() > 0.3; }, 5000));
    const double place = value.value();
    const double speed = value.velocity();
    ASSERT_GT(speed, 0);
    value.setTarget(2);
    EXPECT_DOUBLE_EQ(value.value(), place);
    EXPECT_DOUBLE_EQ(value.velocity(), speed);
    ASSERT_TRUE(settles(value));
    EXPECT_DOUBLE_EQ(value.value(), 2);
}

TEST_F(SpringValueTest, TakesItsFirstTargetAtOnce) {
    SpringValue value;
    value.classBegin();
    value.setTarget(0.7);
    value.componentComplete();
    EXPECT_DOUBLE_EQ(value.value(), 0.7);
    EXPECT_EQ(value.state(), QAbstractAnimation::Stopped);
}

TEST_F(SpringValueTest, JumpsWhereMotionIsReduced) {
    SpringValue value;
    value.setTarget(1);
    Motion::instance().setReduced(true);
    EXPECT_DOUBLE_EQ(value.value(), 1);
    value.setTarget(5);
    EXPECT_DOUBLE_EQ(value.value(), 5);
    EXPECT_EQ(value.state(), QAbstractAnimation::Stopped);
}

}  // namespace
}  // namespace vesk

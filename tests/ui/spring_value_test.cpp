#include "ui/spring_value.h"

#include <gtest/gtest.h>

#include <QEventLoop>
#include <QTest>
#include <algorithm>
#include <cmath>

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
    SpringValue value;
    value.setResponse(0.9);
    value.setDampingFraction(0.6);
    const DampedSpring spring{0.9, 0.6};
    double worst = 0;
    int frames = 0;
    QObject::connect(&value, &SpringValue::valueChanged, [&] {
        if (value.state() == QAbstractAnimation::Running) {
            const double expected = 1 + spring.after(value.currentTime() / 1000.0, {-1, 0}).displacement;
            worst = std::max(worst, std::abs(value.value() - expected));
            ++frames;
        }
    });
    value.setTarget(1);
    ASSERT_TRUE(settles(value));
    EXPECT_GT(frames, 5);
    EXPECT_LT(worst, 0.01);
    EXPECT_DOUBLE_EQ(value.value(), 1);
}

TEST_F(SpringValueTest, OvershootsAsAnUnderDampedSpringDoes) {
    SpringValue value;
    value.setResponse(0.55);
    value.setDampingFraction(0.5);
    double highest = 0;
    QObject::connect(&value, &SpringValue::valueChanged, [&] { highest = std::max(highest, value.value()); });
    value.setTarget(1);
    ASSERT_TRUE(settles(value));
    EXPECT_NEAR(highest, 1 + std::exp(-0.5 * 3.14159 / std::sqrt(0.75)), 0.05);
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

// A number that springs to its target, and keeps its velocity if the target changes on the way. Created by views, on
// the main thread. Updated once per frame while it moves; costs nothing at rest.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QAbstractAnimation>
#include <QObject>
#include <QQmlParserStatus>

#include "ui/damped_spring.h"

namespace vesk {

class SpringValue : public QAbstractAnimation, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    /// The value that this moves to. The very first target is reached at once.
    Q_PROPERTY(double target READ target WRITE setTarget NOTIFY targetChanged)
    Q_PROPERTY(double value READ value NOTIFY valueChanged)
    /// See DampedSpring.
    Q_PROPERTY(double response READ response WRITE setResponse NOTIFY responseChanged)
    Q_PROPERTY(double dampingFraction READ dampingFraction WRITE setDampingFraction NOTIFY dampingFractionChanged)

public:
    explicit SpringValue(QObject* parent = nullptr);

    double target() const { return target_; }
    double value() const { return value_; }
    double response() const { return spring_.response; }
    double dampingFraction() const { return spring_.dampingFraction; }
    /// Per second.
    double velocity() const { return velocity_; }

    /// Starts or redirects the motion towards `target`. With reduced motion, the value jumps there.
    void setTarget(double target);
    void setResponse(double seconds);
    void setDampingFraction(double fraction);

    /// Endless: the animation stops itself when the spring is at rest.
    int duration() const override { return -1; }

    void classBegin() override { complete_ = false; }
    void componentComplete() override { complete_ = true; }

Q_SIGNALS:
    void targetChanged();
    void valueChanged();
    void responseChanged();
    void dampingFractionChanged();

protected:
    void updateCurrentTime(int milliseconds) override;

private:
    void setValue(double value);
    void rest();

    DampedSpring spring_;
    double target_ = 0;
    double value_ = 0;
    double velocity_ = 0;
    DampedSpring::Motion start_;
    double settlingTime_ = 0;
    bool complete_ = true;
};

}  // namespace vesk

// The spring with which list rows appear and disappear, as an easing curve and a duration for animations. It always
// starts from rest, so a curve is exact (SpringValue is for targets that change on the way).
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QEasingCurve>
#include <QObject>

namespace vesk {

class ListSpring : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(QEasingCurve easing READ easing CONSTANT)
    /// Milliseconds until the motion is at rest.
    Q_PROPERTY(int duration READ duration CONSTANT)

public:
    using QObject::QObject;

    static QEasingCurve easing();
    static int duration();
};

}  // namespace vesk

// The spring in which rows of a list come and go, as animations take it: an easing curve and the time that it needs. It
// always starts from rest, so a plain curve is exact (see SpringValue for what is bent on its way).
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
    /// Milliseconds until the motion has come to rest.
    Q_PROPERTY(int duration READ duration CONSTANT)

public:
    using QObject::QObject;

    static QEasingCurve easing();
    static int duration();
};

}  // namespace vesk

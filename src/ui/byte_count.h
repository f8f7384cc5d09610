// Sizes as texts, for views.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

namespace vesk {

class ByteCount : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// A number of bytes in decimal units: "1.2 GB". Clamped to 64 bits.
    Q_INVOKABLE static QString text(double bytes);
};

}  // namespace vesk

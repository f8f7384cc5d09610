// Fresh identifiers, for views.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QObject>
#include <QString>

#include "platform/uuid.h"

namespace vesk {

class Identifier : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    /// The text of a random UUID.
    Q_INVOKABLE static QString make() { return QString::fromStdString(Uuid::random().text()); }
};

}  // namespace vesk

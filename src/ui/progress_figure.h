// An item that is accessible as a progress bar with a value. (In Qt 6.4 a QML item with that role has a name but no
// value, so its changes are never spoken.) Main thread only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QQuickItem>
#include <QString>

namespace vesk {

class ProgressFigure : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Whole percents, 0 to 100.
    Q_PROPERTY(int value MEMBER value NOTIFY valueChanged)
    /// The accessible name, spoken besides the value.
    Q_PROPERTY(QString accessibleName MEMBER accessibleName NOTIFY accessibleNameChanged)

public:
    explicit ProgressFigure(QQuickItem* parent = nullptr);

    int value = 0;
    QString accessibleName;

signals:
    void valueChanged();
    void accessibleNameChanged();
};

}  // namespace vesk

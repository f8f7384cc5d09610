// A surface that runs from one colour at its top left corner to another at its bottom right. The scene graph's own
// gradients run along one side only.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QQuickPaintedItem>

namespace vesk {

class DiagonalGradient : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor from MEMBER from_ NOTIFY changed)
    Q_PROPERTY(QColor to MEMBER to_ NOTIFY changed)

public:
    explicit DiagonalGradient(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor from_;
    QColor to_;
};

}  // namespace vesk

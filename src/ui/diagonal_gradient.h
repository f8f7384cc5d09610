// A surface that runs from one colour at its top left corner to another at its bottom right. The scene graph's own
// gradients run along one side only, and look jagged at rounded corners without a graphics processor.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QQuickPaintedItem>
#include <QRectF>

namespace vesk {

class DiagonalGradient : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor from MEMBER from_ NOTIFY changed)
    Q_PROPERTY(QColor to MEMBER to_ NOTIFY changed)
    /// Radius of the rounded corners; 0 leaves them square.
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)
    /// What the gradient spans, in the item's coordinates, where the item shows a piece of it; empty for the item.
    Q_PROPERTY(QRectF whole MEMBER whole_ NOTIFY changed)
    /// Whether it fades away from its top to its bottom.
    Q_PROPERTY(bool fades MEMBER fades_ NOTIFY changed)

public:
    explicit DiagonalGradient(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor from_;
    QColor to_;
    double radius_ = 0;
    QRectF whole_;
    bool fades_ = false;
};

}  // namespace vesk

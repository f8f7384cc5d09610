// A rectangle with a gradient from its top left corner to its bottom right. The scene graph's own gradients are only
// horizontal or vertical, and their rounded corners look jagged without a GPU.
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
    /// Radius of the corners; 0 for square ones.
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)
    /// The rectangle that the gradient spans, in the item's coordinates, if the item shows only a part of it. If empty,
    /// the gradient spans the item.
    Q_PROPERTY(QRectF whole MEMBER whole_ NOTIFY changed)
    /// Whether it fades out from top to bottom.
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

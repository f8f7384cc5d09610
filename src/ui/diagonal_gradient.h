// A surface that runs from one colour at its top left corner to another at its bottom right. The scene graph's own
// gradients run along one side only, and look jagged at rounded corners without a graphics processor.
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
    /// Radius of the rounded corners; 0 leaves them square.
    Q_PROPERTY(double radius MEMBER radius_ NOTIFY changed)

public:
    explicit DiagonalGradient(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor from_;
    QColor to_;
    double radius_ = 0;
};

}  // namespace vesk

// A stroke along a circle, of which the wheel is made. Painted by the CPU with antialiasing, so that it looks the same
// with every renderer.
#pragma once

#include <QtQml/qqmlregistration.h>
#include <QColor>
#include <QQuickPaintedItem>

namespace vesk {

class Arc : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// Start and end as fractions of the full circle, clockwise from the top; clamped to 0 and 1.
    Q_PROPERTY(double from MEMBER from_ NOTIFY changed)
    Q_PROPERTY(double to MEMBER to_ NOTIFY changed)
    /// Degrees by which the stroke is rotated clockwise.
    Q_PROPERTY(double turn MEMBER turn_ NOTIFY changed)
    Q_PROPERTY(double lineWidth MEMBER lineWidth_ NOTIFY changed)
    /// Distance between the item's edge and the stroke's outer edge.
    Q_PROPERTY(double inset MEMBER inset_ NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    /// If set, the stroke is a gradient from `color` at the top to this at the bottom.
    Q_PROPERTY(QColor endColor MEMBER endColor_ NOTIFY changed)
    Q_PROPERTY(bool roundCaps MEMBER roundCaps_ NOTIFY changed)

public:
    explicit Arc(QQuickItem* parent = nullptr);
    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    double from_ = 0;
    double to_ = 1;
    double turn_ = 0;
    double lineWidth_ = 1;
    double inset_ = 0;
    QColor color_;
    QColor endColor_ = Qt::transparent;
    bool roundCaps_ = false;
};

}  // namespace vesk

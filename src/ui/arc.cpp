#include "ui/arc.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <algorithm>

namespace vesk {

Arc::Arc(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &Arc::changed, this, [this] { update(); });
}

void Arc::paint(QPainter* painter) {
    const double start = std::clamp(from_, 0.0, 1.0);
    const double end = std::clamp(to_, 0.0, 1.0);
    const double side = std::min(width(), height()) - 2 * inset_ - lineWidth_;
    if (end <= start || side <= 0) {
        return;
    }
    const QRectF circle((width() - side) / 2, (height() - side) / 2, side, side);

    QPen pen(color_, lineWidth_, Qt::SolidLine, roundCaps_ ? Qt::RoundCap : Qt::FlatCap, Qt::MiterJoin);
    constexpr double miterLimit = 10;
    pen.setMiterLimit(miterLimit);
    if (endColor_.alpha() > 0) {
        QLinearGradient gradient(circle.topLeft(), circle.bottomRight());
        gradient.setColorAt(0, color_);
        gradient.setColorAt(1, endColor_);
        pen.setBrush(gradient);
    }
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(pen);
    if (end - start >= 1) {
        painter->drawEllipse(circle);
        return;
    }
    const double top = 90 - turn_;
    constexpr double turn = 360;
    QPainterPath path;
    path.arcMoveTo(circle, top - start * turn);
    path.arcTo(circle, top - start * turn, (start - end) * turn);
    painter->drawPath(path);
}

}  // namespace vesk

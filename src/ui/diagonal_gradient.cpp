#include "ui/diagonal_gradient.h"

#include <QLinearGradient>
#include <QPainter>

namespace vesk {

DiagonalGradient::DiagonalGradient(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &DiagonalGradient::changed, this, [this] { update(); });
}

void DiagonalGradient::paint(QPainter* painter) {
    // The corners lie at the ends of the gradient whatever the shape of the surface.
    QLinearGradient gradient(0, 0, 1, 1);
    gradient.setCoordinateMode(QGradient::ObjectMode);
    gradient.setColorAt(0, from_);
    gradient.setColorAt(1, to_);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(gradient);
    painter->drawRoundedRect(boundingRect(), radius_, radius_);
}

}  // namespace vesk

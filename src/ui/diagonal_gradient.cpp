#include "ui/diagonal_gradient.h"

#include <QLinearGradient>
#include <QPainter>
#include <QTransform>

namespace vesk {

DiagonalGradient::DiagonalGradient(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setAntialiasing(true);
    connect(this, &DiagonalGradient::changed, this, [this] { update(); });
}

void DiagonalGradient::paint(QPainter* painter) {
    // The corners lie at the ends of the gradient whatever the shape of the surface.
    const QRectF span = whole_.isEmpty() ? boundingRect() : whole_;
    QLinearGradient gradient(0, 0, 1, 1);
    gradient.setColorAt(0, from_);
    gradient.setColorAt(1, to_);
    QBrush brush(gradient);
    brush.setTransform(QTransform::fromScale(span.width(), span.height()) *
                       QTransform::fromTranslate(span.x(), span.y()));
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(brush);
    painter->drawRoundedRect(boundingRect(), radius_, radius_);
    if (fades_) {
        QLinearGradient share(0, 0, 0, height());
        share.setColorAt(0, Qt::black);
        share.setColorAt(1, Qt::transparent);
        painter->setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter->fillRect(boundingRect(), share);
    }
}

}  // namespace vesk

// Vesk's own drawings: one SVG file each on a 24 x 24 grid, in the colour named "currentColor".

#include <QBuffer>
#include <QFile>
#include <QImageReader>

#include "ui/pictogram.h"

namespace vesk {

QImage pictogram(const QString& symbol, const QColor& color, int side) {
    QFile file(QStringLiteral(":/qt/qml/Vesk/pictograms/%1.svg").arg(symbol));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    QByteArray drawing = file.readAll();
    drawing.replace("currentColor", color.name(QColor::HexRgb).toLatin1());
    QBuffer buffer(&drawing);
    QImageReader reader(&buffer, "svg");
    reader.setScaledSize(QSize(side, side));
    reader.setBackgroundColor(Qt::transparent);
    return reader.read();
}

}  // namespace vesk

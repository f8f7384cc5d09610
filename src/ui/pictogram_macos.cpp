// The system's own pictograms.

#include <QPainter>

#include "platform/system/objective_c.h"
#include "ui/pictogram.h"

namespace vesk {

namespace {

// From AppKit's headers.
constexpr double semiboldWeight = 0.3;    // NSFontWeightSemibold
constexpr unsigned long pngFileType = 4;  // NSBitmapImageFileTypePNG

// The pictogram as a PNG file in memory, about `side` points large; empty for an unknown name.
QByteArray systemPictogram(const QString& symbol, double side) {
    const AutoreleasePool pool;
    const id name = stringOf(symbol.toUtf8().constData());
    id image = send<id, id, id>(classNamed("NSImage"), "imageWithSystemSymbolName:accessibilityDescription:", name,
                                static_cast<id>(nullptr));
    if (image == nullptr) {
        return {};
    }
    const id size = send<id, double, double>(classNamed("NSImageSymbolConfiguration"),
                                             "configurationWithPointSize:weight:", side, semiboldWeight);
    image = send<id, id>(image, "imageWithSymbolConfiguration:", size);
    const id tiff = send(image, "TIFFRepresentation");
    const id bitmap = send<id, id>(classNamed("NSBitmapImageRep"), "imageRepWithData:", tiff);
    const id png = send<id, unsigned long, id>(bitmap, "representationUsingType:properties:", pngFileType,
                                               send(classNamed("NSDictionary"), "dictionary"));
    if (png == nullptr) {
        return {};
    }
    return QByteArray(send<const char*>(png, "bytes"), static_cast<int>(send<unsigned long>(png, "length")));
}

}  // namespace

QImage pictogram(const QString& symbol, const QColor& color, int side) {
    // A pictogram of n points is about 1.25 n wide with its margins.
    const QImage drawn = QImage::fromData(systemPictogram(symbol, side * 0.8));
    if (drawn.isNull()) {
        return {};
    }
    QImage result(side, side, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QSize fitting = drawn.size().scaled(side, side, Qt::KeepAspectRatio);
    const QPoint corner((side - fitting.width()) / 2, (side - fitting.height()) / 2);
    painter.drawImage(QRect(corner, fitting), drawn);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(result.rect(), color);
    return result;
}

}  // namespace vesk

// The images that views request by address: pictograms and soft shadows, drawn on demand in the requested colour.
//   image://vesk/pictogram/globe/ff5fba77
//   image://vesk/shadow/16/20/14332615      (corner radius, blur radius, colour)
#pragma once

#include <QImage>
#include <QQuickImageProvider>

namespace vesk {

class WindowImages : public QQuickImageProvider {
public:
    WindowImages();
    /// Called by the QML engine on the main thread. An invalid address gives an empty image.
    QImage requestImage(const QString& address, QSize* size, const QSize& requestedSize) override;
};

/// The smallest nine-patch of a blurred, rounded rectangle: corners of `cornerRadius + 2 * blurRadius` around a centre
/// of one pixel.
QImage softShadow(int cornerRadius, int blurRadius, const QColor& color);

}  // namespace vesk

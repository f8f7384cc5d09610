// The pictures that views ask for by address: pictograms and soft shadows, made on demand in the asked colour.
//   image://vesk/pictogram/globe/ff5fba77
//   image://vesk/shadow/16/20/14332615      (corner radius, blur radius, colour)
#pragma once

#include <QImage>
#include <QQuickImageProvider>

namespace vesk {

class WindowImages : public QQuickImageProvider {
public:
    WindowImages();
    /// Called by the QML engine on the main thread. An address that makes no sense gives an empty picture.
    QImage requestImage(const QString& address, QSize* size, const QSize& requestedSize) override;
};

/// A rounded rectangle whose edges are blurred, as small as a nine-patch of it can be: corners of
/// `cornerRadius + 2 * blurRadius` around a middle of one pixel.
QImage softShadow(int cornerRadius, int blurRadius, const QColor& color);

}  // namespace vesk

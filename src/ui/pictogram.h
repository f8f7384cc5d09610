// The pictograms of cards, by the names in the rules: the system's on macOS, Vesk's own drawings elsewhere.
#pragma once

#include <QColor>
#include <QImage>
#include <QString>

namespace vesk {

/// The pictogram in one colour, `side` pixels square; an empty image for an unknown name. Main thread only.
QImage pictogram(const QString& symbol, const QColor& color, int side);

}  // namespace vesk

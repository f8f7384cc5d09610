// The pictograms of cards, by the names that the rules give them: the system's own on macOS, Vesk's drawings elsewhere.
#pragma once

#include <QColor>
#include <QImage>
#include <QString>

namespace vesk {

/// The pictogram in one colour, `side` pixels square; an empty picture for a name without a drawing.
/// Called on the main thread.
QImage pictogram(const QString& symbol, const QColor& color, int side);

}  // namespace vesk

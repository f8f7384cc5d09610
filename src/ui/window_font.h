// The font of the window: a rounded one where there is any.
#pragma once

#include <QFont>
#include <QString>

namespace vesk {

/// The font of all the window's texts. Once the QGuiApplication exists; main thread.
QFont windowFont();

/// The font that a file holds, or the system's own where there is no such file or no font in it. Of a system whose
/// fonts Qt cannot find by their names.
QFont fontInFile(const QString& file);

}  // namespace vesk

// What every window of Vesk needs before its QML is loaded. Main thread only.
#pragma once

#include <QQmlEngine>

namespace vesk {

/// Sets the application's font, and gives an engine what the views need.
void prepareViews(QQmlEngine& engine);

/// The factor by which to scale the window's text, 1 to 2: the desktop's setting, divided by the scale that Qt already
/// applies to the whole window. Call it once the QGuiApplication exists.
double textScale();

}  // namespace vesk

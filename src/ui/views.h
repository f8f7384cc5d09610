// What every window of Vesk's needs before its QML is loaded. Main thread.
#pragma once

#include <QQmlEngine>

namespace vesk {

/// Sets the fonts of the window for the whole application, and gives an engine what the views need.
void prepareViews(QQmlEngine& engine);

/// How much larger than composed the window's type is to be, 1 to 2: the desktop's wish, as far as Qt has not already
/// followed it by enlarging everything. Once the QGuiApplication exists.
double textScale();

}  // namespace vesk

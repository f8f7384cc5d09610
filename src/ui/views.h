// What every window of Vesk's needs before its QML is loaded. Main thread.
#pragma once

#include <QQmlEngine>

namespace vesk {

/// Sets the fonts of the window for the whole application, and gives an engine what the views need.
void prepareViews(QQmlEngine& engine);

}  // namespace vesk

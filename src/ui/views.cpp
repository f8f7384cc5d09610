#include "ui/views.h"

#include <QGuiApplication>
#include <algorithm>

#include "platform/system/desktop.h"
#include "ui/button_interface.h"
#include "ui/window_font.h"
#include "ui/window_images.h"

namespace vesk {

void prepareViews(QQmlEngine& engine) {
    QGuiApplication::setFont(windowFont());
    tellOfButtons();
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("vesk"), new WindowImages);  // the engine owns it
}

double textScale() {
    constexpr double most = 2;
    double scale = desktopTextScale();
    // On X11 the same setting also reaches Qt as dots per inch, and Qt has already scaled the whole window by it.
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        scale /= qGuiApp->devicePixelRatio();
    }
    return std::clamp(scale, 1.0, most);
}

}  // namespace vesk

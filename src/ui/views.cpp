#include "ui/views.h"

#include <QGuiApplication>

#include "ui/window_font.h"
#include "ui/window_images.h"

namespace vesk {

void prepareViews(QQmlEngine& engine) {
    QGuiApplication::setFont(windowFont());
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("vesk"), new WindowImages);  // the engine owns it
}

}  // namespace vesk

#include "ui/views.h"

#include <QFont>
#include <QGuiApplication>

#include "ui/window_images.h"

namespace vesk {

void prepareViews(QQmlEngine& engine) {
    QFont font;
#ifdef Q_OS_MACOS
    font.setFamilies({QStringLiteral(".AppleSystemUIFontRounded"), QStringLiteral(".AppleSystemUIFont")});
#else
    font.setFamilies({QStringLiteral("Quicksand"), QStringLiteral("sans-serif")});
#endif
    QGuiApplication::setFont(font);
    engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    engine.addImageProvider(QStringLiteral("vesk"), new WindowImages);  // the engine owns it
}

}  // namespace vesk

#include "app/startup_error.h"

#include "ui/views.h"

namespace vesk {

QQuickWindow* loadStartupError(QQmlApplicationEngine& engine, const StartupError& error) {
    prepareViews(engine);
    engine.setInitialProperties({{QStringLiteral("textScale"), textScale()},
                                 {QStringLiteral("heading"), QString::fromUtf8(error.title)},
                                 {QStringLiteral("message"), QString::fromUtf8(error.message)}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Vesk/StartupErrorWindow.qml")));
    return engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
}

}  // namespace vesk

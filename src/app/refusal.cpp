#include "app/refusal.h"

#include "ui/views.h"

namespace vesk {

QQuickWindow* loadRefusal(QQmlApplicationEngine& engine, const Refusal& refusal) {
    prepareViews(engine);
    engine.setInitialProperties({{QStringLiteral("heading"), QString::fromUtf8(refusal.title)},
                                 {QStringLiteral("message"), QString::fromUtf8(refusal.message)}});
    engine.load(QUrl(QStringLiteral("qrc:/qt/qml/Vesk/RefusalWindow.qml")));
    return engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow*>(engine.rootObjects().first());
}

}  // namespace vesk

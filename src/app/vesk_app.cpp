#include "app/vesk_app.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QQmlComponent>
#include <QScreen>
#include <QVariant>
#include <utility>

#include "ui/views.h"

namespace vesk {

VeskApp::VeskApp(Store::Sources sources) : store_(std::move(sources)) {
    prepareViews(engine_);
}

VeskApp::~VeskApp() = default;

bool VeskApp::show() {
    QVariantMap properties{{QStringLiteral("store"), QVariant::fromValue(&store_)},
                           {QStringLiteral("textScale"), textScale()}};
    if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
        properties.insert(QStringLiteral("available"), QSizeF(screen->availableSize()));
    }
    engine_.setInitialProperties(properties);
    const QUrl window(QStringLiteral("qrc:/qt/qml/Vesk/MainWindow.qml"));
    // A thread of the engine's loads the types. This one would only wait; it finds the fonts meanwhile.
    const QQmlComponent loading(&engine_, window, QQmlComponent::Asynchronous);
    QFontDatabase::families();
    engine_.load(window);
    if (engine_.rootObjects().isEmpty()) {
        return false;
    }
    window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
    if (window_ == nullptr) {
        return false;
    }
    delegate_.extendIntoTitleBar(*window_, [this](double inset) { window_->setProperty("titleBarInset", inset); });
    delegate_.outliveWindow(*window_, [this] { comeForward(); });
    delegate_.offerMenus(engine_, *window_, QUrl(QStringLiteral("qrc:/qt/qml/Vesk/SystemMenus.qml")));
    delegate_.applicationDidFinishLaunching();
    return true;
}

void VeskApp::comeForward() {
    window_->setWindowStates(window_->windowStates() & ~Qt::WindowMinimized);
    window_->show();
    delegate_.bringForward(*window_);
}

void VeskApp::setTextScale(double scale) {
    window_->setProperty("textScale", scale);
}

}  // namespace vesk

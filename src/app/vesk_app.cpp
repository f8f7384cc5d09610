#include "app/vesk_app.h"

#include <QGuiApplication>
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
    engine_.load(QUrl(QStringLiteral("qrc:/qt/qml/Vesk/MainWindow.qml")));
    if (engine_.rootObjects().isEmpty()) {
        return false;
    }
    window_ = qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
    if (window_ == nullptr) {
        return false;
    }
    window_->setProperty("titleBarInset", delegate_.extendIntoTitleBar(*window_));
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

// Window managers on Linux do most of this by themselves.

#include <QGuiApplication>
#include <QTimer>
#include <QWindow>
#include <chrono>

#include "app/app_delegate.h"

namespace vesk {

void AppDelegate::applicationDidFinishLaunching() const {
}

void AppDelegate::bringForward(QWindow& window) const {
    window.raise();
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        window.requestActivate();
        return;
    }
    // X refuses the focus to a wish that is older than the user's last deed elsewhere, and Qt dates its wishes by the
    // last event that it got. So one is brought about first: a change of any property of the window is told to it.
    constexpr std::chrono::milliseconds untilItCame{50};
    constexpr double nearlyOpaque = 0.999;
    window.setOpacity(nearlyOpaque);
    window.setOpacity(1);
    QTimer::singleShot(untilItCame, &window, [&window] { window.requestActivate(); });
}

void AppDelegate::extendIntoTitleBar(QWindow& /*window*/, std::function<void(double)> /*setInset*/) const {
}

void AppDelegate::outliveWindow(QWindow& /*window*/, std::function<void()> /*reopen*/) const {
}

void AppDelegate::offerMenus(QQmlEngine& /*engine*/, QWindow& /*window*/, const QUrl& /*source*/) const {
}

}  // namespace vesk

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
    // X ignores a request for the focus that is older than the user's last input elsewhere, and Qt dates its request by
    // the last event it received. Changing a property of the window causes a new event first.
    constexpr std::chrono::milliseconds untilItCame{50};
    constexpr double nearlyOpaque = 0.999;
    window.setOpacity(nearlyOpaque);
    window.setOpacity(1);
    QTimer::singleShot(untilItCame, &window, [&window] { window.requestActivate(); });
}

// On macOS what follows is kept. NOLINTBEGIN(performance-unnecessary-value-param)
void AppDelegate::extendIntoTitleBar(QWindow& /*window*/, std::function<void(double)> /*setInset*/) const {
}

void AppDelegate::outliveWindow(QWindow& /*window*/, std::function<void()> /*reopen*/) const {
}
// NOLINTEND(performance-unnecessary-value-param)

void AppDelegate::offerMenus(QQmlEngine& /*engine*/, QWindow& /*window*/, const QUrl& /*source*/) const {
}

}  // namespace vesk

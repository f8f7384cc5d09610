#include <QAction>
#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QVariant>
#include <QWindow>
#include <QtGlobal>
#include <utility>

#include "app/app_delegate.h"
#include "platform/system/objective_c.h"

namespace vesk {

namespace {

// From AppKit's headers.
constexpr long activationPolicyRegular = 0;  // NSApplicationActivationPolicyRegular
constexpr long titleHidden = 1;              // NSWindowTitleHidden

// Under any other platform of Qt's (offscreen, for tests and pictures) there is nobody to talk to: a window's id is a
// number, and no object.
bool isOnScreen() {
    return QGuiApplication::platformName() == QLatin1String("cocoa");
}

id application() {
    return send(classNamed("NSApplication"), "sharedApplication");
}

// The system's own panel needs no description: it shows the icon, the name and the version that Info.plist holds.
void showAbout() {
    const AutoreleasePool pool;
    send<void, id>(application(), "orderFrontStandardAboutPanel:", static_cast<id>(nullptr));
}

// Qt tells the address of the window's view as a number.
id frameOf(const QWindow& window) {
    return send(reinterpret_cast<id>(window.winId()), "window");  // NOLINT(performance-no-int-to-ptr)
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)

// Qt keeps the content beneath the title bar itself, and knows how much that covers.
void letContentReachTop(QWindow& window) {
    window.setFlags(window.flags() | Qt::ExpandedClientAreaHint | Qt::NoTitleBarBackgroundHint);
}

double insetOf(const QWindow& window) {
    return window.safeAreaMargins().top();
}

#else

void letContentReachTop(QWindow& window) {
    constexpr unsigned long fullSizeContentView = 1UL << 15;  // NSWindowStyleMaskFullSizeContentView
    const id frame = frameOf(window);
    if (frame == nullptr) {
        return;
    }
    const auto style = send<unsigned long>(frame, "styleMask");
    send<void, unsigned long>(frame, "setStyleMask:", style | fullSizeContentView);
    send<void, BOOL>(frame, "setTitlebarAppearsTransparent:", YES);
}

// Qt cannot tell how much of the content the title bar covers; it goes away in full screen.
double insetOf(const QWindow& window) {
    constexpr double standardTitleBarHeight = 28;
    return (window.windowStates() & Qt::WindowFullScreen) != 0 ? 0 : standardTitleBarHeight;
}

#endif

// The content would run into the name of the window.
void hideTitle(const QWindow& window) {
    send<void, long>(frameOf(window), "setTitleVisibility:", titleHidden);
}

// Sees to a window's frame when the window is made, which happens again after it was closed, and when it enters or
// leaves full screen, which undoes what was asked of the frame.
class TitleBar : public QObject {
public:
    TitleBar(QWindow& window, std::function<void(double)> setInset)
        : QObject(&window), window_(window), setInset_(std::move(setInset)) {
        window.installEventFilter(this);
#if QT_VERSION >= QT_VERSION_CHECK(6, 9, 0)
        connect(&window, &QWindow::safeAreaMarginsChanged, this, [this] { setInset_(insetOf(window_)); });
#endif
        adapt();
    }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        const bool isMade =
            event->type() == QEvent::PlatformSurface &&
            static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() == QPlatformSurfaceEvent::SurfaceCreated;
        if (isMade || event->type() == QEvent::WindowStateChange) {
            adapt();
        }
        return false;
    }

private:
    void adapt() {
        const AutoreleasePool pool;
        letContentReachTop(window_);
        hideTitle(window_);
        setInset_(insetOf(window_));
    }

    QWindow& window_;
    std::function<void(double)> setInset_;
};

// The system says that the user has come back to the application by making it the active one, also when it was that
// already and its icon in the Dock was clicked.
class Reopening : public QObject {
public:
    Reopening(QWindow& window, std::function<void()> reopen)
        : QObject(&window), window_(window), reopen_(std::move(reopen)) {
        QCoreApplication::instance()->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == QCoreApplication::instance() && event->type() == QEvent::ApplicationActivate &&
            !window_.isVisible()) {
            reopen_();
        }
        return false;
    }

private:
    QWindow& window_;
    std::function<void()> reopen_;
};

}  // namespace

void AppDelegate::applicationDidFinishLaunching() const {
    if (!isOnScreen()) {
        return;
    }
    const AutoreleasePool pool;
    send<BOOL, long>(application(), "setActivationPolicy:", activationPolicyRegular);
    send<void, BOOL>(application(), "activateIgnoringOtherApps:", YES);
}

void AppDelegate::bringForward(QWindow& window) const {
    window.raise();
    window.requestActivate();
    applicationDidFinishLaunching();
}

void AppDelegate::extendIntoTitleBar(QWindow& window, std::function<void(double)> setInset) const {
    if (isOnScreen()) {
        new TitleBar(window, std::move(setInset));  // the window owns it
    }
}

void AppDelegate::outliveWindow(QWindow& window, std::function<void()> reopen) const {
    if (isOnScreen()) {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        new Reopening(window, std::move(reopen));  // the window owns it
    }
}

void AppDelegate::offerMenus(QQmlEngine& engine, QWindow& window, const QUrl& source) const {
    if (!isOnScreen()) {
        return;
    }
    QQmlComponent component(&engine, source);
    QObject* menus = component.createWithInitialProperties({{QStringLiteral("target"), QVariant::fromValue(&window)}});
    if (menus == nullptr) {
        qWarning("%s", qPrintable(component.errorString()));
        return;
    }
    menus->setParent(&window);
    auto* about = new QAction(menus);
    QObject::connect(about, &QAction::triggered, about, showAbout);
    menus->setProperty("about", QVariant::fromValue(about));
}

}  // namespace vesk

#include "app/app_delegate.h"

#include <QWindow>

#include "platform/system/objective_c.h"

namespace vesk {

namespace {

// From AppKit's headers.
constexpr long activationPolicyRegular = 0;               // NSApplicationActivationPolicyRegular
constexpr unsigned long fullSizeContentView = 1UL << 15;  // NSWindowStyleMaskFullSizeContentView
constexpr double standardTitleBarHeight = 28;

// Qt's own menu hides its "About" until an application describes one itself. The system's panel needs no description:
// it shows the icon, the name and the version that Info.plist holds.
void offerAbout(id application) {
    const id bar = send(application, "mainMenu");
    if (send<long>(bar, "numberOfItems") == 0) {
        return;  // a first item that is not there would be an exception
    }
    const id menu = send(send<id, long>(bar, "itemAtIndex:", 0), "submenu");
    const id item = send<id, id, SEL, id>(send(classNamed("NSMenuItem"), "alloc"),
                                          "initWithTitle:action:keyEquivalent:", stringOf("About Vesk"),
                                          sel_registerName("orderFrontStandardAboutPanel:"), stringOf(""));
    send<void, id, long>(menu, "insertItem:atIndex:", item, 0);
    send<void>(item, "release");
}

}  // namespace

void AppDelegate::applicationDidFinishLaunching() const {
    const AutoreleasePool pool;
    const id application = send(classNamed("NSApplication"), "sharedApplication");
    offerAbout(application);
    send<BOOL, long>(application, "setActivationPolicy:", activationPolicyRegular);
    send<void, BOOL>(application, "activateIgnoringOtherApps:", YES);
}

void AppDelegate::bringForward(QWindow& window) const {
    window.raise();
    window.requestActivate();
    applicationDidFinishLaunching();
}

double AppDelegate::extendIntoTitleBar(QWindow& window) const {
    const AutoreleasePool pool;
    const id frame = send(reinterpret_cast<id>(window.winId()), "window");
    if (frame == nullptr) {
        return 0;
    }
    const auto style = send<unsigned long>(frame, "styleMask");
    send<void, unsigned long>(frame, "setStyleMask:", style | fullSizeContentView);
    send<void, BOOL>(frame, "setTitlebarAppearsTransparent:", YES);
    return standardTitleBarHeight;
}

}  // namespace vesk

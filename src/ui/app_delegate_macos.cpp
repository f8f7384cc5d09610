// Asked of AppKit through the Objective-C runtime's C interface, which needs no Objective-C compiler.

#include <objc/message.h>
#include <objc/runtime.h>

#include <QWindow>

#include "ui/app_delegate.h"

namespace vesk {

namespace {

// From AppKit's headers.
constexpr long activationPolicyRegular = 0;               // NSApplicationActivationPolicyRegular
constexpr unsigned long fullSizeContentView = 1UL << 15;  // NSWindowStyleMaskFullSizeContentView
constexpr double standardTitleBarHeight = 28;

// Sends a message whose arguments and result are of the given types.
template <typename Result, typename... Arguments>
Result send(id receiver, const char* message, Arguments... arguments) {
    return reinterpret_cast<Result (*)(id, SEL, Arguments...)>(objc_msgSend)(receiver, sel_registerName(message),
                                                                             arguments...);
}

}  // namespace

void AppDelegate::applicationDidFinishLaunching() const {
    const id application = send<id>(reinterpret_cast<id>(objc_getClass("NSApplication")), "sharedApplication");
    send<BOOL, long>(application, "setActivationPolicy:", activationPolicyRegular);
    send<void, BOOL>(application, "activateIgnoringOtherApps:", YES);
}

void AppDelegate::bringForward(QWindow& window) const {
    window.raise();
    window.requestActivate();
    applicationDidFinishLaunching();
}

double AppDelegate::extendIntoTitleBar(QWindow& window) const {
    const id view = reinterpret_cast<id>(window.winId());
    const id frame = view == nullptr ? nullptr : send<id>(view, "window");
    if (frame == nullptr) {
        return 0;
    }
    const auto style = send<unsigned long>(frame, "styleMask");
    send<void, unsigned long>(frame, "setStyleMask:", style | fullSizeContentView);
    send<void, BOOL>(frame, "setTitlebarAppearsTransparent:", YES);
    return standardTitleBarHeight;
}

}  // namespace vesk

#include "platform/system/desktop.h"

#include <CoreServices/CoreServices.h>

#include "platform/system/core_foundation.h"
#include "platform/system/objective_c.h"

namespace vesk {

bool reducedMotionWanted() {
    const AutoreleasePool pool;
    return send<BOOL>(send(classNamed("NSWorkspace"), "sharedWorkspace"), "accessibilityDisplayShouldReduceMotion");
}

double desktopTextScale() {
    return 1;
}

void openFullDiskAccessSettings() {
    const Owned<CFStringRef> text =
        makeString("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles");
    const Owned<CFURLRef> link(text ? CFURLCreateWithString(kCFAllocatorDefault, text.get(), nullptr) : nullptr);
    if (link) {
        LSOpenCFURLRef(link.get(), nullptr);
    }
}

}  // namespace vesk

// The accessibility setting "Reduce motion", asked of the workspace through the Objective-C runtime's C interface.

#include <objc/message.h>
#include <objc/runtime.h>

#include "platform/reduced_motion.h"

namespace vesk {

bool reducedMotionWanted() {
    const Class workspaceClass = objc_getClass("NSWorkspace");
    if (workspaceClass == nullptr) {
        return false;
    }
    const auto object = reinterpret_cast<id (*)(Class, SEL)>(objc_msgSend);
    const auto boolean = reinterpret_cast<BOOL (*)(id, SEL)>(objc_msgSend);
    const id workspace = object(workspaceClass, sel_registerName("sharedWorkspace"));
    return workspace != nullptr && boolean(workspace, sel_registerName("accessibilityDisplayShouldReduceMotion"));
}

}  // namespace vesk

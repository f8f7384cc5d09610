// The accessibility setting "Reduce motion", asked of the workspace.

#include "platform/system/objective_c.h"
#include "platform/system/reduced_motion.h"

namespace vesk {

bool reducedMotionWanted() {
    const AutoreleasePool pool;
    return send<BOOL>(send(classNamed("NSWorkspace"), "sharedWorkspace"), "accessibilityDisplayShouldReduceMotion");
}

}  // namespace vesk

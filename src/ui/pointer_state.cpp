#include "ui/pointer_state.h"

namespace vesk {

PointerState& PointerState::instance() {
    static PointerState theInstance;
    return theInstance;
}

PointerState* PointerState::create(QQmlEngine* /*engine*/, QJSEngine* /*scripts*/) {
    QJSEngine::setObjectOwnership(&instance(), QJSEngine::CppOwnership);
    return &instance();
}

void PointerState::setMouseDown(bool down) {
    if (down != mouseDown_) {
        mouseDown_ = down;
        Q_EMIT mouseDownChanged();
    }
}

}  // namespace vesk

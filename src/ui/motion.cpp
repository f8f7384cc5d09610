#include "ui/motion.h"

#include "platform/system/desktop.h"

namespace vesk {

Motion::Motion() : reduced_(reducedMotionWanted()) {
}

Motion& Motion::instance() {
    static Motion theInstance;
    return theInstance;
}

Motion* Motion::create(QQmlEngine* /*engine*/, QJSEngine* /*scripts*/) {
    QJSEngine::setObjectOwnership(&instance(), QJSEngine::CppOwnership);
    return &instance();
}

void Motion::setReduced(bool reduced) {
    if (reduced != reduced_) {
        reduced_ = reduced;
        Q_EMIT reducedChanged();
    }
}

}  // namespace vesk

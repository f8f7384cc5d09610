#include "app/display_needed.h"

#include <QString>
#include <QtGlobal>

namespace vesk {

namespace {

void (*handlerWithoutDisplay)() = nullptr;
QtMessageHandler usualHandler = nullptr;

// Qt aborts as soon as the handler of its last message has returned.
void handle(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtFatalMsg) {
        handlerWithoutDisplay();
    }
    usualHandler(type, context, message);
}

}  // namespace

DisplayNeeded::DisplayNeeded(void (*otherwise)()) {
    handlerWithoutDisplay = otherwise;
    usualHandler = qInstallMessageHandler(handle);
}

DisplayNeeded::~DisplayNeeded() {
    qInstallMessageHandler(usualHandler);
}

}  // namespace vesk

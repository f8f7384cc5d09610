#include "app/display_needed.h"

#include <QString>
#include <QtGlobal>

namespace vesk {

namespace {

void (*handlerWithoutDisplay)() = nullptr;
QtMessageHandler usualHandler = nullptr;

// Qt aborts as soon as this handler has returned from a fatal message.
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

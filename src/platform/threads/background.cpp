#include "platform/threads/background.h"

#include "platform/threads/background_system.h"

namespace vesk {

namespace {

thread_local bool entered = false;

}  // namespace

void enterBackground() {
    if (!entered) {
        entered = true;
        lowerPriority();
    }
}

bool inBackground() {
    return entered;
}

}  // namespace vesk

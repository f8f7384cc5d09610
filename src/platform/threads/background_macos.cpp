#include <pthread/qos.h>

#include "platform/threads/background_system.h"

namespace vesk {

void lowerPriority() {
    // Refused for a thread whose priority was set by pthread_setschedparam, which QThread::setPriority calls: no thread
    // of Vesk's uses that.
    pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0);
}

}  // namespace vesk

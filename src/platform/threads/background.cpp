#include "platform/threads/background.h"

#ifdef __APPLE__
#include <pthread/qos.h>
#else
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace vesk {

namespace {

thread_local bool entered = false;

#ifdef __APPLE__

void lowerPriority() {
    // Refused for a thread whose priority was set by pthread_setschedparam, which QThread::setPriority calls: no thread
    // of Vesk's uses that.
    pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0);
}

#else

void lowerPriority() {
    // At 10 a program that keeps all cores busy loses 14 % to a scan, at 15 it loses 4 %.
    constexpr int background = 15;
    // On Linux a nice value belongs to a thread; the call takes its kernel id.
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), background);
    // The lowest of the ordinary class: the disk serves others first, where it is told apart at all. The idle class
    // would be served only when nobody else asks, and a scan beside a long copy would never end.
    constexpr int oneThread = 1;
    constexpr int lowestBestEffort = (2 << 13) | 7;
    syscall(SYS_ioprio_set, oneThread, 0, lowestBestEffort);
}

#endif

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

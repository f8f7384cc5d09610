#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "platform/background_system.h"

namespace vesk {

void lowerPriority() {
    constexpr int background = 10;
    // On Linux a nice value belongs to a thread; the call takes its kernel id.
    setpriority(PRIO_PROCESS, static_cast<id_t>(syscall(SYS_gettid)), background);
}

}  // namespace vesk

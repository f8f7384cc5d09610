#include "platform/system/descriptor_limit.h"

#include <sys/resource.h>

#include <algorithm>

namespace vesk {

unsigned long raiseDescriptorLimit() {
    // OPEN_MAX of macOS, whose kernel takes no more from setrlimit even where it calls the hard limit unlimited; more
    // than any walk needs elsewhere.
    constexpr rlim_t enough = 10240;
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return 0;
    }
    const rlim_t wanted = limit.rlim_max == RLIM_INFINITY ? enough : std::min<rlim_t>(limit.rlim_max, enough);
    if (limit.rlim_cur == RLIM_INFINITY || limit.rlim_cur >= wanted) {
        return limit.rlim_cur;
    }
    const rlim_t before = limit.rlim_cur;
    limit.rlim_cur = wanted;
    return setrlimit(RLIMIT_NOFILE, &limit) == 0 ? wanted : before;
}

}  // namespace vesk

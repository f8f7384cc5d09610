// Preloaded into a program, counts its calls of pthread_mutex_lock and prints their number at the end. All of Vesk's
// own locks (std::mutex) use it.

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cstdio>

namespace {

std::atomic<long> locks = 0;

struct Report {
    ~Report() { std::fprintf(stderr, "%ld locks\n", locks.load()); }
} report;

}  // namespace

extern "C" __attribute__((visibility("default"))) int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    using Lock = int (*)(pthread_mutex_t*);
    static const Lock next = reinterpret_cast<Lock>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    locks.fetch_add(1, std::memory_order_relaxed);
    return next(mutex);
}

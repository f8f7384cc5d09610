// Orders between threads that the thread sanitizer cannot see by itself, because the library that makes them is built
// without it: oneTBB starts a task after it was handed over, and returns after the last one has ended. Without being
// told, the sanitizer would call every hand-over a race. In other builds both functions are nothing.
#pragma once

#if defined(__SANITIZE_THREAD__)
#define VESK_THREAD_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define VESK_THREAD_SANITIZER 1
#endif
#endif

#if defined(VESK_THREAD_SANITIZER)
extern "C" void __tsan_acquire(void* address);
extern "C" void __tsan_release(void* address);
#endif

namespace vesk {

/// What this thread did until now comes before what other threads do after `tellTakenOver` of the same address.
inline void tellHandedOver([[maybe_unused]] void* address) {
#if defined(VESK_THREAD_SANITIZER)
    __tsan_release(address);
#endif
}

/// What this thread does from now on comes after what other threads did before `tellHandedOver`.
inline void tellTakenOver([[maybe_unused]] void* address) {
#if defined(VESK_THREAD_SANITIZER)
    __tsan_acquire(address);
#endif
}

}  // namespace vesk

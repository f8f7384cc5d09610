// How many descriptors this process may have open at once, and waiting for one. Any thread.
#pragma once

#include <cerrno>
#include <chrono>
#include <thread>

namespace vesk {

/// Raises the limit as far as an ordinary program may: macOS starts programs with 256, which a walk on all cores uses
/// up. First thing in main; programs that are started inherit it. Returns the limit then in force.
unsigned long raiseDescriptorLimit();

/// Calls `open` until it succeeds or fails for want of no descriptor; for a second at most. Whoever holds them may be
/// another part of this process that is about to close some. Returns what `open` returned last.
template <typename Open>
auto patiently(Open open) {
    constexpr int tries = 200;
    constexpr auto untilNextTry = std::chrono::milliseconds(5);
    auto opened = open();
    for (int i = 0; i < tries && !opened && (errno == EMFILE || errno == ENFILE); ++i) {
        std::this_thread::sleep_for(untilNextTry);
        opened = open();
    }
    return opened;
}

}  // namespace vesk

#include "state/running_work.h"

#include <atomic>

namespace vesk {

namespace {

std::atomic<std::size_t> tokens = 0;

}  // namespace

WorkToken takeWorkToken() {
    ++tokens;
    return WorkToken(&tokens, [](const void*) { --tokens; });
}

std::size_t runningWork() {
    return tokens;
}

}  // namespace vesk

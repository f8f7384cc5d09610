#include "state/work_left.h"

#include <atomic>

namespace vesk {

namespace {

std::atomic<std::size_t> tokens = 0;

}  // namespace

WorkToken takeWorkToken() {
    ++tokens;
    return WorkToken(&tokens, [](const void*) { --tokens; });
}

std::size_t workLeft() {
    return tokens;
}

}  // namespace vesk

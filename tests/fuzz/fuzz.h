// What the fuzz targets share. Each target is one function on bytes that somebody else made up, and ends the process
// when what Vesk makes of them breaks a promise.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

/// Ends the process unless the promise holds.
#define VESK_HOLDS(promise)                                                                   \
    do {                                                                                      \
        if (!(promise)) {                                                                     \
            std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #promise); \
            std::abort();                                                                     \
        }                                                                                     \
    } while (false)

/// The target: what libFuzzer calls, and the replaying program too.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace vesk::testing {

/// A copy of its own, so that the address sanitizer sees every reading past its end.
inline std::string bytesOf(const std::uint8_t* data, std::size_t size) {
    return size == 0 ? std::string() : std::string(reinterpret_cast<const char*>(data), size);
}

}  // namespace vesk::testing

// Shared by the fuzz targets. Each target is a function of arbitrary bytes that ends the process if Vesk's result
// breaks a promise.
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

/// The target, called by libFuzzer and by replay.cpp.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace vesk::testing {

/// A separate copy, so that the address sanitizer detects every read past its end.
inline std::string bytesOf(const std::uint8_t* data, std::size_t size) {
    return size == 0 ? std::string() : std::string(reinterpret_cast<const char*>(data), size);
}

}  // namespace vesk::testing

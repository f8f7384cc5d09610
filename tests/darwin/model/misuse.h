// Where the model of Darwin reports what the real one would answer with a crash, a leak or silence.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace vesk::darwin {

/// Fails the running test. Callable from any thread.
inline void misuse(const std::string& what) {
    ADD_FAILURE() << "on Darwin: " << what;
}

}  // namespace vesk::darwin

// A scan's two counters, fed by all its probes at once and read to show progress.
#pragma once

#include <cstdint>
#include <mutex>

namespace vesk {

class Tracker {
public:
    struct Counts {
        /// Bytes of regular files measured so far.
        std::int64_t bytes = 0;
        /// Regular files measured so far.
        std::int64_t files = 0;
        friend bool operator==(const Counts&, const Counts&) = default;
    };

    /// Adds to both counters atomically. Callable from any thread. Ends the program on overflow.
    void add(Counts counts);

    /// Both counters at one moment. Callable from any thread.
    Counts counts() const;

    /// How often `add` was called, to test the batching of updates. Callable from any thread.
    std::int64_t updates() const;

private:
    mutable std::mutex lock_;
    Counts counts_;
    std::int64_t updates_ = 0;
};

}  // namespace vesk

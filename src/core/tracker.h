// The two counters of a scan, fed by all its probes at once and read by whoever shows progress.
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

    /// Adds to both counters at once. Callable from any thread. Ends the program on overflow.
    void add(Counts counts);

    /// Both counters at one moment. Callable from any thread.
    Counts counts() const;

    /// How often `add` was called: what the batching of updates is judged by.
    std::int64_t updates() const;

private:
    mutable std::mutex lock_;
    Counts counts_;
    std::int64_t updates_ = 0;
};

}  // namespace vesk

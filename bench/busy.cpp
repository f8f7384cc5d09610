// vesk-busy SECONDS THREADS: stands in for a foreground program: arithmetic without system calls, on that many threads.
// Prints the work done in each second, in millions of steps.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

int main(int count, char** arguments) {
    if (count != 3) {
        std::fprintf(stderr, "usage: vesk-busy SECONDS THREADS\n");
        return 2;
    }
    const std::chrono::duration<double> wanted(std::atof(arguments[1]));
    const int threads = std::max(1, std::atoi(arguments[2]));
    std::atomic<std::uint64_t> steps = 0;
    const auto start = std::chrono::steady_clock::now();
    const auto work = [&] {
        constexpr int stepsBetweenLooks = 1'000'000;
        std::uint64_t state = 1;
        std::uint64_t done = 0;
        while (std::chrono::steady_clock::now() - start < wanted) {
            for (int i = 0; i < stepsBetweenLooks; ++i) {
                state = state * 6364136223846793005U + 1442695040888963407U;
            }
            done += stepsBetweenLooks;
        }
        // Uses the state, so that the compiler keeps the loop.
        steps += done + (state == 0 ? 1U : 0U);
    };
    std::vector<std::thread> others;
    for (int i = 1; i < threads; ++i) {
        others.emplace_back(work);
    }
    work();
    for (std::thread& other : others) {
        other.join();
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::printf("%.1f million steps a second\n", static_cast<double>(steps.load()) / 1e6 / took.count());
    return 0;
}

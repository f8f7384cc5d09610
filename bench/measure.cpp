// vesk-measure FOLDER...: measures each folder once, as a rule does, and prints bytes, files, the tracker's updates and
// seconds. The seconds are those of the measuring alone, without the program's start.

#include <sys/resource.h>

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <memory>

#include "core/probe.h"

int main(int count, char** arguments) {
    if (count < 2) {
        std::fprintf(stderr, "usage: vesk-measure FOLDER...\n");
        return 2;
    }
    const auto tracker = std::make_shared<vesk::Tracker>();
    const auto start = std::chrono::steady_clock::now();
    std::int64_t bytes = 0;
    for (int i = 1; i < count; ++i) {
        bytes += vesk::Probe(tracker).measure(arguments[i]).size;
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::printf("%" PRId64 " bytes %" PRId64 " files %" PRId64 " updates %.4f seconds\n", bytes,
                tracker->counts().files, tracker->updates(), took.count());
    return 0;
}

// vesk-measure [--background] [--seconds N] FOLDER...: measures each folder once, as a rule does, and prints bytes,
// files, the tracker's updates and seconds. The seconds do not include the program's start.
//
// --background: with a scan's priority. --seconds: repeats until that many seconds have passed.

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string_view>

#include "core/probe.h"
#include "platform/threads/background.h"

int main(int count, char** arguments) {
    using Clock = std::chrono::steady_clock;
    int first = 1;
    std::chrono::duration<double> wanted(0);
    for (; first < count && std::string_view(arguments[first]).starts_with("--"); ++first) {
        const std::string_view option = arguments[first];
        if (option == "--background") {
            vesk::enterBackground();
        } else if (option == "--seconds" && first + 1 < count) {
            wanted = std::chrono::duration<double>(std::atof(arguments[++first]));
        } else {
            std::fprintf(stderr, "vesk-measure: unknown option %s\n", arguments[first]);
            return 2;
        }
    }
    if (first == count) {
        std::fprintf(stderr, "usage: vesk-measure [--background] [--seconds N] FOLDER...\n");
        return 2;
    }
    const auto tracker = std::make_shared<vesk::Tracker>();
    const auto start = Clock::now();
    std::int64_t bytes = 0;
    do {
        for (int i = first; i < count; ++i) {
            bytes += vesk::Probe(tracker).measure(arguments[i]).size;
        }
    } while (Clock::now() - start < wanted);
    const std::chrono::duration<double> took = Clock::now() - start;
    std::printf("%" PRId64 " bytes %" PRId64 " files %" PRId64 " updates %.4f seconds\n", bytes,
                tracker->counts().files, tracker->updates(), took.count());
    return 0;
}

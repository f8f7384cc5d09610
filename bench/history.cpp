// vesk-history RUNS MOVES: encodes a history of that many runs with that many moves each, decodes it, and prints the
// processor time of each (user and system), the size of the text and the peak memory.

#include <sys/resource.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "state/history_codec.h"

namespace {

double cpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

double peakMegabytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_maxrss) * 1024 / 1e6;
}

std::vector<vesk::HistoryEntry> madeUpHistory(std::size_t runs, std::size_t moves) {
    const std::string home = "/home/tester";
    std::vector<vesk::HistoryEntry> entries(runs);
    std::size_t number = 0;
    for (vesk::HistoryEntry& entry : entries) {
        entry.titles = {"App caches", "Idle coding projects"};
        entry.moves.reserve(moves);
        for (std::size_t i = 0; i < moves; ++i, ++number) {
            const std::string name = "com.example.item-" + std::to_string(number);
            const std::string original = home + "/Library/Caches/" + name;
            const std::string trashed = home + "/.local/share/Trash/files/" + name;
            entry.moves.push_back({original, trashed, 4096});  // copies have no spare capacity
        }
    }
    return entries;
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::fputs("usage: vesk-history RUNS MOVES\n", stderr);
        return 2;
    }
    std::vector<vesk::HistoryEntry> entries =
        madeUpHistory(std::strtoul(arguments[1], nullptr, 10), std::strtoul(arguments[2], nullptr, 10));
    const double start = cpuSeconds();
    std::string text = vesk::encodeHistory(entries);
    const double written = cpuSeconds();
    const std::size_t length = text.size();
    entries = {};
    const double emptied = cpuSeconds();
    const auto read = vesk::decodeHistory(std::move(text));
    const double ended = cpuSeconds();
    std::printf("%zu bytes: written in %.4f s, read in %.4f s, peak %.1f MB\n", length, written - start,
                ended - emptied, peakMegabytes());
    return read ? 0 : 1;
}

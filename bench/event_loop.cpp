// vesk-event-loop [--home | --linux-home] TREE: scans with a store and an event loop as in the application, and prints
// how long that took and the longest time that the event loop kept a 1 ms timer waiting.
//
// TREE serves as an application cache in a made-up home; with --home or --linux-home, as the home itself.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "bench/made_up_world.h"
#include "state/store.h"

using vesk::bench::MadeUpWorld;

namespace {

double milliseconds(qint64 nanoseconds) {
    return static_cast<double>(nanoseconds) / 1e6;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string_view how = count == 3 ? arguments[1] : "";
    if (count != 2 && how != "--home" && how != "--linux-home") {
        std::fprintf(stderr, "usage: vesk-event-loop [--home | --linux-home] TREE\n");
        return 2;
    }
    const QCoreApplication application(count, arguments);
    const MadeUpWorld made(arguments[count - 1], how == "--home"         ? MadeUpWorld::TreeIs::home
                                                 : how == "--linux-home" ? MadeUpWorld::TreeIs::linuxHome
                                                                         : MadeUpWorld::TreeIs::cache);
    vesk::Store store;

    std::vector<qint64> gaps;
    QElapsedTimer sinceTick;
    QTimer ticking;
    ticking.setTimerType(Qt::PreciseTimer);
    ticking.setInterval(1);
    QObject::connect(&ticking, &QTimer::timeout, [&] {
        gaps.push_back(sinceTick.nsecsElapsed());
        sinceTick.start();
        if (store.phase() == vesk::Store::Phase::done) {
            QCoreApplication::quit();
        }
    });
    QElapsedTimer sinceStart;
    QTimer::singleShot(0, [&] {
        sinceStart.start();
        sinceTick.start();
        ticking.start();
        store.scan();
    });
    QCoreApplication::exec();

    const double seconds = milliseconds(sinceStart.nsecsElapsed()) / 1e3;
    std::sort(gaps.begin(), gaps.end());
    const auto at = [&](double part) {
        return milliseconds(gaps[static_cast<std::size_t>(part * static_cast<double>(gaps.size() - 1))]);
    };
    std::printf("%" PRId64
                " files %.3f seconds %zu ticks: median gap %.2f ms, 99th percentile %.2f ms, longest %.2f ms\n",
                store.trackerCounts().files, seconds, gaps.size(), at(0.5), at(0.99), at(1.0));
    return 0;
}

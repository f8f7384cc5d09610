// vesk-scan-frames TREE: opens the window on a made-up home that contains TREE as an application's cache, lets it scan,
// and prints the gaps between its frames during the scan.

#include <QGuiApplication>

#include <QElapsedTimer>
#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "app/vesk_app.h"
#include "bench/made_up_world.h"

int main(int count, char** arguments) {
    if (count != 2) {
        std::fprintf(stderr, "usage: vesk-scan-frames TREE\n");
        return 2;
    }
    const QGuiApplication application(count, arguments);
    const vesk::bench::MadeUpWorld made(arguments[1], vesk::bench::MadeUpWorld::TreeIs::cache);
    vesk::VeskApp app;
    if (!app.show()) {
        return EXIT_FAILURE;
    }

    std::vector<double> gaps;
    QElapsedTimer sinceFrame;
    QElapsedTimer sinceStart;
    sinceStart.start();
    QObject::connect(app.window(), &QQuickWindow::afterRendering, [&] {
        if (sinceFrame.isValid()) {
            gaps.push_back(static_cast<double>(sinceFrame.nsecsElapsed()) / 1e6);
        }
        sinceFrame.start();
    });
    double seconds = 0;
    QObject::connect(&app.store(), &vesk::Store::phaseChanged, [&] {
        if (app.store().phase() == vesk::Store::Phase::done) {
            seconds = static_cast<double>(sinceStart.nsecsElapsed()) / 1e9;
            QCoreApplication::quit();
        }
    });
    QGuiApplication::exec();

    if (gaps.empty()) {
        std::fprintf(stderr, "vesk-scan-frames: the scan was over before a second frame\n");
        return EXIT_FAILURE;
    }
    std::sort(gaps.begin(), gaps.end());
    const auto at = [&](double part) {
        return gaps[static_cast<std::size_t>(part * static_cast<double>(gaps.size() - 1))];
    };
    std::printf("%" PRId64
                " files %.3f seconds %zu frames: median %.1f ms apart, 95th percentile %.1f ms, longest %.1f ms\n",
                app.store().trackerCounts().files, seconds, gaps.size() + 1, at(0.5), at(0.95), at(1.0));
    return 0;
}

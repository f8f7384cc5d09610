// vesk-start-up BEGAN [TREE]: starts the window as the application does, on an empty home or one that contains TREE as
// an application's cache, and prints when each step was done, in milliseconds since BEGAN. BEGAN is the time just
// before this program was started, in seconds since 1970, with fraction.

#include <QGuiApplication>

#include <time.h>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "app/vesk_app.h"
#include "bench/made_up_world.h"

using vesk::bench::MadeUpWorld;

namespace {

double began = 0;

void tell(const char* step) {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const double seconds = static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9 - began;
    std::printf("%s: %.1f ms\n", step, seconds * 1e3);
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 2 && count != 3) {
        std::fprintf(stderr, "usage: vesk-start-up BEGAN [TREE]\n");
        return 2;
    }
    began = std::strtod(arguments[1], nullptr);
    tell("loaded and linked");
    std::unique_ptr<MadeUpWorld> made = count == 3
                                            ? std::make_unique<MadeUpWorld>(arguments[2], MadeUpWorld::TreeIs::cache)
                                            : std::make_unique<MadeUpWorld>();
    tell("(world of the benchmark)");
    const QGuiApplication application(count, arguments);
    tell("application");
    vesk::VeskApp app;
    tell("store and engine");
    if (!app.show()) {
        return EXIT_FAILURE;
    }
    tell("views and scan begun");
    QObject::connect(
        app.window(), &QQuickWindow::afterRendering, app.window(),
        [] {
            tell("first frame");
            QCoreApplication::quit();
        },
        static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection));
    QGuiApplication::exec();
    made.reset();
    std::fflush(stdout);
    std::_Exit(EXIT_SUCCESS);  // a scan may be running
}

// Vesk on a made-up Mac: the real window over a home in a temporary folder, with preferences and a Trash of its own,
// all of it removed when the window closes. Nothing outside that folder is read or written.

#include <unistd.h>

#include <QGuiApplication>
#include <QSocketNotifier>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "demo_home/demo_home.h"
#include "platform/world.h"
#include "temporary_folder.h"
#include "ui/vesk_app.h"

namespace {

int signalPipe[2] = {-1, -1};

// All that a signal handler may do: the event loop reads the byte and quits as if the window had been closed.
void passOn(int /*signal*/) {
    const char byte = 0;
    (void)!::write(signalPipe[1], &byte, 1);
}

bool quitOnSignals(QGuiApplication& application) {
    if (::pipe(signalPipe) != 0) {
        return false;
    }
    auto* notifier = new QSocketNotifier(signalPipe[0], QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    struct sigaction action {};
    action.sa_handler = passOn;
    return sigaction(SIGTERM, &action, nullptr) == 0 && sigaction(SIGINT, &action, nullptr) == 0 &&
           sigaction(SIGHUP, &action, nullptr) == 0;
}

// The made-up Mac has a disk to match its quarter of a gigabyte of files; on a real one they would not show.
vesk::Store::Sources demoSources() {
    vesk::Store::Sources sources;
    sources.volume = [] { return vesk::VolumeFigures{1'000'000'000, 320'000'000}; };
    return sources;
}

}  // namespace

int main(int argc, char** argv) {
    // Static, so that it goes also when Qt ends the program because the display went away; and it goes last: the store
    // may still be finishing a clean when the window closes.
    static const vesk::TemporaryFolder folder("vesk-demo");
    const std::optional<vesk::World> world =
        folder.path().empty() ? std::nullopt : vesk::makeDemoHome(folder.path() / "mac");
    if (!world) {
        std::fputs("vesk-demo: cannot make its home in the temporary folder\n", stderr);
        return EXIT_FAILURE;
    }
    vesk::setWorld(*world);

    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("Vesk"));
    if (!quitOnSignals(application)) {
        std::fputs("vesk-demo: cannot listen for signals\n", stderr);
        return EXIT_FAILURE;
    }
    vesk::VeskApp vesk(demoSources());
    if (!vesk.show()) {
        return EXIT_FAILURE;
    }
    return QGuiApplication::exec();
}

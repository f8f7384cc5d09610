#include "app/application.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QSocketNotifier>
#include <QThread>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>

#include "app/display_needed.h"
#include "app/single_instance.h"
#include "app/startup_error.h"
#include "app/vesk_app.h"
#include "platform/system/descriptor_limit.h"
#include "platform/system/preferences.h"
#include "platform/system/process.h"
#include "platform/system/termination.h"
#include "platform/world.h"
#include "state/running_work.h"

namespace vesk {

namespace {

// The first instance may take two seconds to end, and longer to start on a busy machine.
constexpr std::chrono::seconds patienceWithFirst{8};

void quitOnSignals(QGuiApplication& application) {
    const int descriptor = terminationSignalDescriptor();
    if (descriptor < 0) {
        std::fputs("Vesk cannot catch termination signals\n", stderr);
        return;
    }
    auto* notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
}

// Prints the error, and shows it in a window for users who started Vesk from a menu.
int showStartupError(const StartupError& error) {
    std::fprintf(stderr, "%s. %s\n", error.title, error.message);
    QQmlApplicationEngine engine;
    if (loadStartupError(engine, error) != nullptr) {
        AppDelegate().applicationDidFinishLaunching();
        QGuiApplication::exec();
    }
    return EXIT_FAILURE;
}

// What to do if Qt ends the program by std::exit, as it does when the display goes away. The window still exists, but
// thread-local data that it needs is already gone, and static objects are about to go. So the store's signals stop, and
// the process ends here.
struct AtExit {
    Store* store = nullptr;
    std::function<void()> tidyUp;
};
std::optional<AtExit> atExit;

void finishAtExit() {
    if (!atExit) {
        return;
    }
    if (atExit->store != nullptr) {
        atExit->store->stopTelling();
        atExit->store->finish();
    }
    endProcesses();
    atExit->tidyUp();
    terminateNow(EXIT_FAILURE);
}

void endWithoutDisplay() {
    std::fputs("Vesk can't open its window: it cannot connect to a display.\n", stderr);
    finishAtExit();
}

int runWindow(SingleInstance& instance, Store::Sources sources) {
    Preferences().removeUnfinished();
    VeskApp vesk(std::move(sources));
    instance.onCall([&vesk] { vesk.comeForward(); });
    if (!vesk.show()) {
        return EXIT_FAILURE;
    }
    atExit->store = &vesk.store();
    const int status = QGuiApplication::exec();
    vesk.window()->hide();  // still visible after a termination signal, and finishing may take a while
    vesk.store().finish();
    atExit->store = nullptr;
    return status;
}

int runApplication(int argc, char** argv, Store::Sources sources) {
    std::optional<DisplayNeeded> display(endWithoutDisplay);
    QGuiApplication application(argc, argv);
    display.reset();
    QGuiApplication::setApplicationName(QStringLiteral("Vesk"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.vesk.Vesk"));
    quitOnSignals(application);

    switch (world().homeFault()) {
        case World::HomeFault::none:
            break;
        case World::HomeFault::unknown:
            return showStartupError(startupErrors::homeUnknown);
        case World::HomeFault::wholeDisk:
            return showStartupError(startupErrors::homeIsWholeDisk);
        case World::HomeFault::anothers:
            return showStartupError(startupErrors::homeIsAnothers);
    }
    SingleInstance instance;
    switch (instance.enter(patienceWithFirst)) {
        case SingleInstance::Entry::first:
            break;
        case SingleInstance::Entry::shown:
            return EXIT_SUCCESS;
        case SingleInstance::Entry::silent:
            return showStartupError(startupErrors::firstIsSilent);
    }
    return runWindow(instance, std::move(sources));
}

}  // namespace

int runProgram(int argc, char** argv, Store::Sources sources, const std::function<void()>& tidyUp) {
    outliveFailedWrites();
    raiseDescriptorLimit();
    atExit = AtExit{nullptr, tidyUp};
    std::atexit(finishAtExit);
    const int status = runApplication(argc, argv, std::move(sources));
    atExit.reset();
    tidyUp();
    return status;
}

int leave(int status) {
    // A thread that waits for a tool ends right after the tool does.
    constexpr std::chrono::milliseconds moment{100};
    endProcesses();
    const QDeadlineTimer deadline(moment);
    while (runningWork() != 0 && !deadline.hasExpired()) {
        QThread::msleep(1);
    }
    // A thread still running would use static objects that are destroyed after main().
    if (runningWork() != 0) {
        terminateNow(status);
    }
    return status;
}

}  // namespace vesk

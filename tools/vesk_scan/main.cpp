// vesk-scan: a read-only report of one scan, in the terminal.

#include <QCoreApplication>
#include <QSocketNotifier>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/files/files.h"
#include "platform/system/descriptor_limit.h"
#include "platform/system/process.h"
#include "platform/system/termination.h"
#include "platform/world.h"
#include "state/store.h"
#include "vesk_scan/report.h"

namespace {

constexpr int failed = 1;
constexpr int badCall = 2;

constexpr const char* usage =
    "usage: vesk-scan [--root DIR] [--home DIR] [--layout macos|linux] [--json]\n"
    "  --root DIR    the folder that stands for \"/\"\n"
    "  --home DIR    the home folder to scan\n"
    "  --layout KIND look where programs of that system keep their things; for\n"
    "                another root or home, macos unless linux is asked for\n"
    "  --json        print one JSON object instead of a table\n";

struct Options {
    std::optional<std::filesystem::path> root;
    std::optional<std::filesystem::path> home;
    std::optional<vesk::Layout> layout;
    bool json = false;
};

std::optional<vesk::Layout> layoutNamed(std::string_view name) {
    if (name == "macos") {
        return vesk::Layout::macos;
    }
    return name == "linux" ? std::optional(vesk::Layout::linuxDesktop) : std::nullopt;
}

// Prints what is wrong with the arguments; returns absent options.
std::nullopt_t refuse(const std::string& message) {
    std::fputs(("vesk-scan: " + message + "\n").c_str(), stderr);
    return std::nullopt;
}

std::optional<Options> readOptions(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view option = argv[i];
        if (option == "--json") {
            options.json = true;
            continue;
        }
        if (option == "--layout") {
            options.layout = ++i == argc ? std::nullopt : layoutNamed(argv[i]);
            if (!options.layout) {
                return refuse(std::string("--layout needs \"macos\" or \"linux\"\n") + usage);
            }
            continue;
        }
        if (option != "--root" && option != "--home") {
            return refuse("unknown option '" + vesk::printable(option) + "'\n" + usage);
        }
        if (++i == argc) {
            return refuse(std::string(option) + " needs a folder\n" + usage);
        }
        std::error_code failure;
        (option == "--root" ? options.root : options.home) = std::filesystem::absolute(argv[i], failure);
        if (failure || argv[i][0] == '\0') {
            return refuse(std::string(option) + " needs a folder\n" + usage);
        }
    }
    return options;
}

bool canBeListed(const std::filesystem::path& folder) {
    if (const auto error = vesk::listFolder(folder, vesk::ListingDetail::kinds).error) {
        refuse("cannot read the folder " + vesk::printable(folder.string()) + ": " +
               std::generic_category().message(static_cast<int>(error->code)));
        return false;
    }
    return true;
}

// Sets the world given by the options; prints why and returns false if it cannot be scanned.
bool enterWorld(const Options& options) {
    vesk::World wanted = vesk::World::ofCurrentUser();
    if (options.root || options.home) {
        wanted = vesk::World::below(options.root.value_or(wanted.root), options.home.value_or(wanted.home));
    }
    wanted.layout = options.layout.value_or(wanted.layout);
    switch (wanted.homeFault()) {
        case vesk::World::HomeFault::none:
        case vesk::World::HomeFault::anothers:  // reading another user's home is fine
            break;
        case vesk::World::HomeFault::unknown:
            refuse("cannot determine the home folder; use --home");
            return false;
        case vesk::World::HomeFault::wholeDisk:
            refuse("the home folder is \"/\", which is never scanned; use --home");
            return false;
    }
    if (!canBeListed(wanted.root) || !canBeListed(wanted.home)) {
        return false;
    }
    vesk::setWorld(std::move(wanted));
    return true;
}

// A hanging tool must not outlive this program; everything else ends with the process.
void endOnSignals(QCoreApplication& application) {
    const int descriptor = vesk::terminationSignalDescriptor();
    if (descriptor < 0) {
        return;
    }
    auto* notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, [] {
        vesk::endProcesses();
        vesk::terminateNow(failed);
    });
}

}  // namespace

int main(int argc, char** argv) {
    vesk::outliveFailedWrites();
    vesk::raiseDescriptorLimit();
    const std::optional<Options> options = readOptions(argc, argv);
    if (!options || !enterWorld(*options)) {
        return badCall;
    }

    QCoreApplication application(argc, argv);
    endOnSignals(application);
    vesk::Store store;
    QObject::connect(
        &store, &vesk::Store::busyChanged, &application,
        [&store] {
            if (!store.busy()) {
                QCoreApplication::quit();
            }
        },
        Qt::QueuedConnection);
    store.scan();
    QCoreApplication::exec();

    const std::string report = options->json ? vesk::reportForPrograms(store) : vesk::reportForPeople(store);
    if (std::fputs(report.c_str(), stdout) < 0 || std::fflush(stdout) != 0) {
        refuse("cannot write the report: " + std::generic_category().message(errno));
        return failed;
    }
    return 0;
}

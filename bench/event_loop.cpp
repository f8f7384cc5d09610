// vesk-event-loop [--home] TREE: scans with the store and its event loop as the application has them, and prints how
// long that took and how long the event loop ever left a 1 ms timer waiting.
//
// TREE is one of the application caches of a made-up home; with --home it is the home itself.

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "platform/world.h"
#include "state/store.h"

namespace {

// An empty folder that stands for "/". In it may lie a home whose "Library/Caches/tree" is a link to the tree, since a
// million files are not made for each run.
class MadeUpWorld {
public:
    enum class TreeIs { home, cache };

    MadeUpWorld(const std::filesystem::path& tree, TreeIs role) {
        std::string pattern = (std::filesystem::temp_directory_path() / "vesk-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) == nullptr) {
            std::perror("vesk-event-loop: making a folder");
            std::exit(1);
        }
        folder_ = pattern;
        const std::filesystem::path whole = std::filesystem::canonical(tree);
        if (role == TreeIs::home) {
            vesk::setWorld(vesk::World::below(folder_, whole));
            return;
        }
        const std::filesystem::path home = folder_ / "home";
        std::filesystem::create_directories(home / "Library/Caches");
        std::filesystem::create_directory_symlink(whole, home / "Library/Caches/tree");
        vesk::setWorld(vesk::World::below(folder_, home));
    }
    MadeUpWorld(const MadeUpWorld&) = delete;
    MadeUpWorld& operator=(const MadeUpWorld&) = delete;
    ~MadeUpWorld() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

private:
    std::filesystem::path folder_;
};

double milliseconds(qint64 nanoseconds) {
    return static_cast<double>(nanoseconds) / 1e6;
}

}  // namespace

int main(int count, char** arguments) {
    const bool isHome = count == 3 && std::string_view(arguments[1]) == "--home";
    if (count != (isHome ? 3 : 2)) {
        std::fprintf(stderr, "usage: vesk-event-loop [--home] TREE\n");
        return 2;
    }
    const QCoreApplication application(count, arguments);
    const MadeUpWorld made(arguments[count - 1], isHome ? MadeUpWorld::TreeIs::home : MadeUpWorld::TreeIs::cache);
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

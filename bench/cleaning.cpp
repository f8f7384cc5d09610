// vesk-cleaning [--singly | --unguarded] ITEMS FOLDER: makes that many small files in a made-up home in FOLDER, moves
// them to the Trash there as a clean does, restores them as an undo does, and prints how long each took, including the
// receipt. --singly syncs each record by itself before its item moves. --unguarded does not ask what programs have in
// use.
//
// vesk-cleaning --processes PROCESSES FOLDER DESCRIPTORS: starts that many processes, each with that many descriptors
// open, half of them files of FOLDER and half pipes, and prints how long a look at what all processes have in use
// takes, the median and the longest of many.
//
// vesk-cleaning --store ITEMS FOLDER RUNS: does the same through Store, with a history of RUNS runs of as many items,
// and prints the longest time that the event loop kept a 1 ms timer waiting.
//
// vesk-cleaning --make ITEMS FOLDER: only makes the files, in FOLDER/home/Library/Caches, for other programs.

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/entry.h"
#include "platform/system/open_files.h"
#include "platform/system/open_watch.h"
#include "platform/system/preferences.h"
#include "platform/trash/trash.h"
#include "platform/world.h"
#include "state/cleaning_worker.h"
#include "state/history_codec.h"
#include "state/receipts.h"
#include "state/restore_worker.h"
#include "state/store.h"

namespace {

namespace fs = std::filesystem;
using vesk::SeenItem;

constexpr std::int64_t itemSize = 4096;

fs::path caches(const fs::path& folder) {
    return folder / "home/Library/Caches";
}

fs::path itemPlace(const fs::path& folder, std::size_t number) {
    return caches(folder) / ("com.example.item-" + std::to_string(number));
}

void makeItems(const fs::path& folder, std::size_t count) {
    fs::create_directories(caches(folder));
    for (std::size_t i = 0; i < count; ++i) {
        std::ofstream(itemPlace(folder, i)) << i;
    }
    sync();  // otherwise the first sync measured would include these files
}

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int measureWork(const fs::path& folder, std::size_t count, bool singly, bool guarded) {
    std::vector<SeenItem> workList;
    const auto seen = vesk::folderIdentity(caches(folder));
    for (std::size_t i = 0; i < count; ++i) {
        workList.push_back({itemPlace(folder, i), seen, {}, itemSize});
    }
    vesk::CleaningLog log;
    const auto start = std::chrono::steady_clock::now();
    {
        vesk::OpenWatch watch;
        vesk::TrashBatch batch(vesk::Preferences().recordNotes(),
                               [&](const fs::path& item) { return watch.noticed(item); });
        vesk::CleaningTools tools;
        if (guarded) {
            tools.lookAtUse = vesk::lookingAtProcesses();
            tools.openWatch = &watch;
            tools.restore = [](const vesk::TrashedItem& item) { return vesk::restoreItem(item); };
        }
        if (!singly) {
            tools.prepare = [&](const SeenItem* first, const SeenItem* last) { batch.record(first, last); };
        }
        tools.moveToTrash = [&](const SeenItem& item) { return batch.move(item); };
        tools.settle = vesk::syncMoves;
        vesk::runCleaning(workList, {}, tools, log);
        log.storeReceipt(vesk::Uuid::random(), vesk::Receipts(vesk::Preferences().receiptsFolder()));
    }
    const double cleaned = secondsSince(start);
    const vesk::CleaningResult result = log.takeResult();
    const auto undoing = std::chrono::steady_clock::now();
    const std::size_t back = vesk::restoreItems(vesk::trashedItems(result.moves, vesk::now(), result.receipt));
    std::printf("%zu items: cleaned in %.3f s, undone in %.3f s\n", count, cleaned, secondsSince(undoing));
    return result.moves.size() == count && back == count ? 0 : 1;
}

// A process with that many descriptors open, half of them files whose paths begin with `files` and half pipes.
class Holder {
public:
    Holder(const std::string& files, std::size_t descriptors) {
        std::array<int, 2> ready{};
        if (pipe(ready.data()) != 0) {
            return;
        }
        process_ = fork();
        if (process_ == 0) {
            const bool isReady = hold(files, descriptors) && write(ready[1], "", 1) == 1;
            _exit(isReady ? pause() : 1);
        }
        close(ready[1]);
        char byte = 0;
        isReady_ = read(ready[0], &byte, 1) == 1;
        close(ready[0]);
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;
    ~Holder() {
        if (process_ > 0) {
            kill(process_, SIGKILL);
            waitpid(process_, nullptr, 0);
        }
    }

    bool isReady() const { return isReady_; }

private:
    static bool hold(const std::string& files, std::size_t descriptors) {
        std::array<int, 2> ends{};
        for (std::size_t opened = 0; opened < descriptors; opened += 4) {
            for (const char* end : {"a", "b"}) {
                const std::string place = files + "-" + std::to_string(opened) + end;
                if (open(place.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600) < 0) {
                    return false;
                }
            }
            if (pipe(ends.data()) != 0) {
                return false;
            }
        }
        return true;
    }

    pid_t process_ = -1;
    bool isReady_ = false;
};

int measureLook(const fs::path& folder, std::size_t processes, std::size_t descriptors) {
    std::deque<Holder> holders;
    for (std::size_t i = 0; i < processes; ++i) {
        if (!holders.emplace_back((folder / std::to_string(i)).string(), descriptors).isReady()) {
            std::fputs("A process could not start or open its files.\n", stderr);
            return 1;
        }
    }
    std::vector<double> times;
    for (int turn = 0; turn < 21; ++turn) {
        const auto look = vesk::lookingAtProcesses();
        const auto start = std::chrono::steady_clock::now();
        const vesk::OpenFiles used = look();
        times.push_back(secondsSince(start) * 1e3);
    }
    std::sort(times.begin(), times.end());
    std::printf("%zu processes with %zu descriptors each: a look takes %.1f ms, at most %.1f ms\n", processes,
                descriptors, times[times.size() / 2], times.back());
    return 0;
}

// In a process of its own: the memory it frees would be tidied up while the loading is measured.
bool storeHistory(std::size_t runs, std::size_t moves) {
    const pid_t child = fork();
    if (child != 0) {
        int status = 1;
        return waitpid(child, &status, 0) == child && status == 0;
    }
    std::vector<vesk::HistoryEntry> entries(runs);
    for (vesk::HistoryEntry& entry : entries) {
        for (std::size_t i = 0; i < moves; ++i) {
            const std::string name = "com.example.item-" + std::to_string(i);
            entry.moves.push_back(
                {"/home/tester/Library/Caches/" + name, "/home/tester/.local/share/Trash/files/" + name, itemSize});
        }
    }
    _exit(vesk::Preferences().setData("vesk.history", vesk::encodeHistory(entries)) ? 0 : 1);
}

// The longest time that the event loop keeps a timer waiting until the work that `begin` starts is done.
double longestGap(const std::function<void()>& begin, const std::function<bool()>& isDone) {
    qint64 longest = 0;
    QElapsedTimer sinceTick;
    QTimer ticking;
    ticking.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticking, &QTimer::timeout, [&] {
        longest = std::max(longest, sinceTick.nsecsElapsed());
        sinceTick.start();
        if (isDone()) {
            QCoreApplication::quit();
        }
    });
    sinceTick.start();
    ticking.start(1);
    QTimer::singleShot(0, begin);
    QCoreApplication::exec();
    return static_cast<double>(longest) / 1e6;
}

int measureStore(const fs::path& folder, std::size_t count, std::size_t runs) {
    if (!storeHistory(runs, count)) {
        std::fputs("The history could not be stored.\n", stderr);
        return 1;
    }
    vesk::Store::Sources sources;
    sources.catalogue = [&] {
        return std::vector<vesk::Spec>{
            {"items", [&](vesk::Probe&) {
                 vesk::Card card;
                 card.id = card.title = "items";
                 card.bucket = vesk::Bucket::safe;
                 card.selected = true;
                 for (std::size_t i = 0; i < count; ++i) {
                     if (const fs::path item = itemPlace(folder, i); fs::exists(item)) {
                         card.entries.push_back({vesk::Uuid::random(), item, item.filename().string(), itemSize, {}});
                     }
                 }
                 return card.entries.empty() ? std::vector<vesk::Card>() : std::vector{card};
             }}};
    };
    std::optional<vesk::Store> store;
    const auto list = [&] { return store->property("history").value<vesk::HistoryList*>(); };
    const double load =
        longestGap([&] { store.emplace(sources); }, [&] { return store && list()->count() == static_cast<int>(runs); });
    const auto isIdle = [&] { return !store->busy(); };
    const double scan = longestGap([&] { store->scan(); }, isIdle);
    const double clean = longestGap([&] { store->performClean(); }, isIdle);
    const double undo = longestGap([&] { store->undo(store->history().front().id); }, isIdle);
    std::printf(
        "%zu items, a history of %zu runs: longest gap %.1f ms loading, %.1f ms scanning, %.1f ms cleaning, "
        "%.1f ms undoing\n",
        count, store->history().size(), load, scan, clean, undo);
    return store->history().front().undone ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string how = count > 3 ? arguments[1] : "";
    const bool hasTwoNumbers = how == "--store" || how == "--processes";
    const bool hasWord = hasTwoNumbers || how == "--singly" || how == "--unguarded" || how == "--make";
    if (count != (hasTwoNumbers ? 5 : hasWord ? 4 : 3)) {
        std::fputs(
            "usage: vesk-cleaning [--singly | --unguarded | --make] ITEMS FOLDER\n"
            "       vesk-cleaning --store ITEMS FOLDER RUNS\n"
            "       vesk-cleaning --processes PROCESSES FOLDER DESCRIPTORS\n",
            stderr);
        return 2;
    }
    const int first = hasWord ? 2 : 1;
    const std::size_t number = std::strtoul(arguments[first], nullptr, 10);
    const std::size_t other = hasTwoNumbers ? std::strtoul(arguments[4], nullptr, 10) : 0;
    const fs::path folder = fs::absolute(arguments[first + 1]);
    if (how == "--processes") {
        return measureLook(folder, number, other);
    }
    makeItems(folder, number);
    if (how == "--make") {
        return 0;
    }
    vesk::setWorld(vesk::World::below(folder, folder / "home"));
    if (how == "--store") {
        const QCoreApplication application(count, arguments);
        return measureStore(folder, number, other);
    }
    return measureWork(folder, number, how == "--singly", how != "--unguarded");
}

// vesk-cleaning [--singly] ITEMS FOLDER: makes so many small files in a made-up home in FOLDER, moves them to the Trash
// there as a clean does, puts them back as an undo does, and prints how long each took, the receipt included.
// --singly has each record waited for by itself before its item moves.
//
// vesk-cleaning --store ITEMS FOLDER RUNS: has Store do the same while its history holds RUNS runs of as many items,
// and prints how long the event loop ever left a 1 ms timer waiting.
//
// vesk-cleaning --make ITEMS FOLDER: makes the files alone, in FOLDER/home/Library/Caches, for other programs.

#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "core/entry.h"
#include "platform/system/preferences.h"
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
    sync();  // or the first wait for the disk would be for these
}

double secondsSince(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

int measureWork(const fs::path& folder, std::size_t count, bool singly) {
    std::vector<SeenItem> workList;
    const auto seen = vesk::folderIdentity(caches(folder));
    for (std::size_t i = 0; i < count; ++i) {
        workList.push_back({itemPlace(folder, i), seen, {}, itemSize});
    }
    vesk::CleaningLog log;
    const auto start = std::chrono::steady_clock::now();
    {
        vesk::TrashBatch batch(vesk::Preferences().recordNotes());
        vesk::CleaningTools tools;
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

void storeHistory(std::size_t runs, std::size_t moves) {
    std::vector<vesk::HistoryEntry> entries(runs);
    for (vesk::HistoryEntry& entry : entries) {
        for (std::size_t i = 0; i < moves; ++i) {
            const std::string name = "com.example.item-" + std::to_string(i);
            entry.moves.push_back(
                {"/home/tester/Library/Caches/" + name, "/home/tester/.local/share/Trash/files/" + name, itemSize});
        }
    }
    vesk::Preferences().setData("vesk.history", vesk::encodeHistory(entries));
}

// The longest that the event loop kept a timer waiting while `begun` work is done.
double longestGap(vesk::Store& store, const std::function<void()>& begin) {
    qint64 longest = 0;
    QElapsedTimer sinceTick;
    QTimer ticking;
    ticking.setTimerType(Qt::PreciseTimer);
    QObject::connect(&ticking, &QTimer::timeout, [&] {
        longest = std::max(longest, sinceTick.nsecsElapsed());
        sinceTick.start();
        if (!store.busy()) {
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
    storeHistory(runs, count);
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
    vesk::Store store(sources);
    const double scan = longestGap(store, [&] { store.scan(); });
    const double clean = longestGap(store, [&] { store.performClean(); });
    const double undo = longestGap(store, [&] { store.undo(store.history().front().id); });
    std::printf("%zu items, a history of %zu runs: longest gap %.1f ms scanning, %.1f ms cleaning, %.1f ms undoing\n",
                count, store.history().size(), scan, clean, undo);
    return store.history().front().undone ? 0 : 1;
}

}  // namespace

int main(int count, char** arguments) {
    const std::string how = count > 3 ? arguments[1] : "";
    const bool hasWord = how == "--singly" || how == "--store" || how == "--make";
    if (count != (how == "--store" ? 5 : hasWord ? 4 : 3)) {
        std::fputs(
            "usage: vesk-cleaning [--singly | --make] ITEMS FOLDER\n"
            "       vesk-cleaning --store ITEMS FOLDER RUNS\n",
            stderr);
        return 2;
    }
    const int first = hasWord ? 2 : 1;
    const std::size_t items = std::strtoul(arguments[first], nullptr, 10);
    const fs::path folder = fs::absolute(arguments[first + 1]);
    makeItems(folder, items);
    if (how == "--make") {
        return 0;
    }
    vesk::setWorld(vesk::World::below(folder, folder / "home"));
    if (how == "--store") {
        const QCoreApplication application(count, arguments);
        return measureStore(folder, items, std::strtoul(arguments[4], nullptr, 10));
    }
    return measureWork(folder, items, how == "--singly");
}

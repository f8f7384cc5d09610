// Stands in for Vesk in the tests of failing calls: runs scan, clean and undo in a made-up world through Store, without
// a window, and prints as one JSON object what Vesk would show its user.
//
//   vesk-driver ROOT HOME [careful] [scan] [clean] [undo]
//
// "careful": cleans check what other programs have in use. Without it nothing counts as in use, and the calls that fail
// are those of the clean itself. "clean" ticks every card first; "undo" takes the newest run that moved something. Exit
// status 3: a step did not end in time.

#include <dlfcn.h>

#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "platform/world.h"
#include "state/store.h"
#include "support/waiting.h"

namespace {

using Json = nlohmann::json;
using vesk::Store;

constexpr std::chrono::seconds patience{60};
constexpr int notInTime = 3;

// Tells the fault library, if it is loaded.
void beginPhase(const char* name) {
    using Function = void(const char*);
    static auto* const tell = reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, "vesk_fault_phase"));
    if (tell != nullptr) {
        tell(name);
    }
}

bool finished(Store& store) {
    return vesk::testing::waitFor([&] { return !store.busy(); }, patience);
}

Json cardsOf(const Store& store) {
    Json cards = Json::array();
    for (const vesk::Card& card : store.cards()) {
        Json entries = Json::array();
        for (const vesk::Entry& entry : card.entries) {
            entries.push_back({{"path", entry.url.string()}, {"size", entry.size}});
        }
        cards.push_back({{"id", card.id}, {"entries", entries}, {"snapshots", card.snapshotIDs.size()}});
    }
    return cards;
}

Json historyOf(Store& store) {
    Json history = Json::array();
    for (const vesk::HistoryEntry& entry : store.history()) {
        Json moves = Json::array();
        for (const vesk::HistoryEntry::Move& move : entry.moves) {
            moves.push_back({{"original", move.original}, {"trashed", move.trashed}, {"size", move.size}});
        }
        history.push_back({{"id", entry.id.text()},
                           {"bytes", entry.bytes},
                           {"moves", moves},
                           {"snapshotsRemoved", entry.snapshotsRemoved},
                           {"undone", entry.undone}});
    }
    return history;
}

bool scan(Store& store, Json& told) {
    beginPhase("scan");
    store.scan();
    const bool ended = finished(store);
    beginPhase("");
    told["cards"] = cardsOf(store);
    told["blockedAreas"] = store.blockedAreas();
    return ended;
}

// The scan after a clean or an undo is not part of its phase.
bool clean(Store& store, Json& told) {
    for (const vesk::Card& card : store.cards()) {
        store.setSelected(QString::fromStdString(card.id), true);
    }
    QObject::connect(&store, &Store::celebrationChanged, &store, [] { beginPhase(""); });
    beginPhase("clean");
    store.performClean();
    const bool ended = finished(store);
    beginPhase("");
    if (const auto& celebration = store.celebration()) {
        told["celebration"] = {
            {"bytes", celebration->bytes}, {"snapshots", celebration->snapshots}, {"failures", celebration->failures}};
    }
    return ended;
}

bool undo(Store& store, Json& told) {
    const auto newest = std::find_if(store.history().begin(), store.history().end(),
                                     [](const vesk::HistoryEntry& entry) { return !entry.moves.empty(); });
    if (newest == store.history().end()) {
        return true;
    }
    QObject::connect(&store, &Store::noticeChanged, &store, [] { beginPhase(""); });
    beginPhase("undo");
    store.undo(newest->id);
    const bool ended = finished(store);
    beginPhase("");
    told["notice"] = store.notice().value_or("");
    return ended;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("usage: vesk-driver ROOT HOME [scan] [clean] [undo]\n", stderr);
        return 2;
    }
    vesk::setWorld(vesk::World::below(argv[1], argv[2]));
    const QCoreApplication application(argc, argv);
    beginPhase("start");
    Json told = Json::object();
    bool ended = true;
    {
        Store::Sources sources;
        const bool careful = std::find(argv, argv + argc, std::string_view("careful")) != argv + argc;
        if (!careful) {
            sources.lookAtUse = [] { return vesk::OpenFiles(std::vector<vesk::UsedFile>()); };
            sources.watchesOpening = false;
        }
        Store store(sources);
        beginPhase("");
        for (int i = 3; i < argc; ++i) {
            const std::string step = argv[i];
            if (step == "careful") {
                continue;
            }
            ended = ended && (step == "scan" ? scan : step == "clean" ? clean : undo)(store, told);
        }
        told["history"] = historyOf(store);
    }
    const std::string text = told.dump(-1, ' ', false, Json::error_handler_t::replace);
    std::fputs((text + "\n").c_str(), stdout);
    return ended ? 0 : notInTime;
}

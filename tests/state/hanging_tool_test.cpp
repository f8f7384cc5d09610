// A store whose rules or cleaning hang: what others find is not held up, and the store can always be ended.

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>

#include "core/spec.h"
#include "rules/rules.h"
#include "state/cleaning_worker.h"
#include "state/history_codec.h"
#include "state/running_work.h"
#include "state/store.h"
#include "state/store_home.h"

namespace vesk {
namespace {

using testing::makeFile;
using testing::testHome;
using testing::testRoot;
using testing::waitFor;
namespace fs = std::filesystem;

// What an ending store may take. Vesk's limit is two seconds in all; a machine that does much else gets more.
constexpr qint64 endLimit = 5000;

class HangingTool : public testing::StoreHome {
protected:
    HangingTool() {
        makeFile(testHome() / "junk/a");
        makeFile(testHome() / "junk/b");
        offerItemsOf(testHome() / "junk");
        sources_.runTool = Store::Sources().runTool;  // the real one, on the tool below the made-up root
    }
    ~HangingTool() override {
        release();
        EXPECT_TRUE(waitFor([] { return runningWork() == 0; }));
    }

    // A backup tool that tells of one snapshot and hangs in `hangingCommand` until released.
    void makeTool(const std::string& hangingCommand) {
        const fs::path tool = testRoot() / "usr/bin/tmutil";
        fs::create_directories(tool.parent_path());
        std::ofstream(tool) << "#!/bin/sh\n"
                            << "cd '" << testRoot().string() << "'\n"
                            << "if [ $1 = " << hangingCommand << " ]; then\n"
                            << "  touch hangs; while [ ! -e released ]; do sleep 0.05; done\n"
                            << "fi\n"
                            << "echo com.apple.TimeMachine.2024-05-01-101530.local\n";
        fs::permissions(tool, fs::perms::owner_all);
    }
    static bool hangs() { return fs::exists(testRoot() / "hangs"); }
    static void release() { std::ofstream(testRoot() / "released") << "yes"; }

    std::vector<std::string> cardIds() const {
        std::vector<std::string> ids;
        for (const Card& card : store_->cards()) {
            ids.push_back(card.id);
        }
        return ids;
    }
    // Ends the store while the tool hangs.
    void expectToEndQuickly() {
        ASSERT_TRUE(waitFor(hangs));
        QElapsedTimer elapsed;
        elapsed.start();
        store_.reset();
        EXPECT_LT(elapsed.elapsed(), endLimit);
    }
    static std::vector<HistoryEntry> storedHistory() {
        return decodeHistory(Preferences().data("vesk.history").value_or("[]")).value();
    }
};

TEST_F(HangingTool, HoldsUpNoOtherRuleOfAScan) {
    makeTool("listlocalsnapshots");
    rules_.push_back({"Time Machine snapshots", rules::timeMachineSnapshots});
    rules_.push_back({"late", [](Probe& probe) {
                          while (!hangs()) {
                              std::this_thread::sleep_for(std::chrono::milliseconds(5));
                          }
                          makeFile(testHome() / "late/file", 10000);
                          return std::vector{testing::cardOf(probe, "late", "Late", {testHome() / "late"})};
                      }});
    Store& store = makeStore();
    store.scan();
    // Two of three rules are through, and what they found is told, while the tool still hangs.
    ASSERT_TRUE(waitFor([&] { return store.progress() > 0.6 && store.filesSeen() == 3; }));
    EXPECT_TRUE(store.busy());
    EXPECT_TRUE(hangs());
    release();
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    EXPECT_THAT(cardIds(), ::testing::UnorderedElementsAre("junk", "snapshots", "late"));
}

TEST_F(HangingTool, DoesNotKeepAScanningStoreFromEnding) {
    makeTool("listlocalsnapshots");
    rules_.push_back({"Time Machine snapshots", rules::timeMachineSnapshots});
    makeStore().scan();
    expectToEndQuickly();
    EXPECT_EQ(runningWork(), 1U) << "the thread that waits for the tool";
}

TEST_F(HangingTool, DoesNotKeepACleaningStoreFromEnding) {
    makeTool("deletelocalsnapshots");
    rules_.push_back({"Time Machine snapshots", rules::timeMachineSnapshots});
    scannedStore().performClean();
    expectToEndQuickly();
    const std::vector<HistoryEntry> history = storedHistory();
    ASSERT_EQ(history.size(), 1U);
    EXPECT_EQ(history[0].moves.size(), 2U);
    EXPECT_EQ(history[0].snapshotsRemoved, 0);
}

TEST_F(HangingTool, SnapshotsDeletedBeforeItHungAreOnRecord) {
    makeTool("none");
    std::atomic<int> calls = 0;
    sources_.runTool = [&, real = sources_.runTool](const std::string& path, const std::vector<std::string>& words) {
        if (++calls == 3) {
            makeTool("deletelocalsnapshots");
        }
        return real(path, words);
    };
    offer([](Probe&) {
        Card card;
        card.id = "snapshots";
        card.bucket = Bucket::safe;
        card.selected = true;
        card.snapshotIDs = {"1", "2", "3", "4"};
        return std::vector{card};
    });
    scannedStore().performClean();
    ASSERT_TRUE(waitFor(hangs));
    store_.reset();
    ASSERT_EQ(storedHistory().size(), 1U);
    EXPECT_EQ(storedHistory()[0].snapshotsRemoved, 2);
    EXPECT_EQ(storedHistory()[0].moves.size(), 2U);
}

// A move cannot be made to hang here; what the log holds at that moment is what the store would record.
TEST_F(HangingTool, EveryMoveBeforeOneThatHangsIsKnown) {
    CleaningLog log;
    std::vector<std::size_t> known;
    CleaningTools tools;
    tools.moveToTrash = [&](const SeenItem& item) {
        known.push_back(log.result().moves.size());
        TrashOutcome outcome;
        outcome.place = item.path;
        return outcome;
    };
    const std::vector<SeenItem> workList = {{"/a", {}, {}, 1}, {"/b", {}, {}, 2}, {"/c", {}, {}, 3}};
    runCleaning(workList, {}, tools, log);
    EXPECT_THAT(known, ::testing::ElementsAre(0U, 1U, 2U));
    EXPECT_THAT(log.result().moves,
                ::testing::ElementsAre(HistoryEntry::Move{"/a", "/a", 1}, HistoryEntry::Move{"/b", "/b", 2},
                                       HistoryEntry::Move{"/c", "/c", 3}));
}

TEST_F(HangingTool, ThatDiesOfASignalDeletedNothing) {
    makeTool("none");
    rules_.push_back({"Time Machine snapshots", rules::timeMachineSnapshots});
    scannedStore();
    std::ofstream(testRoot() / "usr/bin/tmutil") << "#!/bin/sh\nkill -SEGV $$\n";
    clean();
    EXPECT_EQ(store_->history().at(0).snapshotsRemoved, 0);
    EXPECT_EQ(store_->celebration()->failures, 1);
    EXPECT_EQ(store_->history().at(0).moves.size(), 2U);
}

}  // namespace
}  // namespace vesk

// Each file-system call of a start, a scan, a clean and an undo fails in turn, with every error that fits it.
// Afterwards no byte is lost, Vesk has reported what happened on disk, and the history can be read.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "faults/fault_run.h"
#include "faults/small_home.h"
#include "support/temporary_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

const std::vector<std::string> everyError = {"EACCES", "EPERM", "EIO",   "ENOSPC", "EMFILE",
                                             "ENOENT", "EINTR", "EXDEV", "EROFS"};
// The lasting errors of a failing, full or read-only disk, and of a program out of descriptors.
const std::vector<std::string> lastingErrors = {"EACCES", "EIO", "ENOSPC", "EMFILE", "EROFS"};
// What a call that took effect may still report.
const std::vector<std::string> answersLost = {"EIO", "ENOENT"};
const std::vector<std::string> kill = {"KILL"};

struct Entries {
    std::int64_t goneBytes = 0;
    std::int64_t gone = 0;
    std::int64_t still = 0;
    std::int64_t snapshots = 0;
    std::set<std::string> gonePaths;
};

class FaultsTest : public TemporaryHome {
protected:
    SmallHome home_;

    // Tries every point in the sample, and prints their number.
    template <typename Prepare, typename Attempt>
    static void atPoints(const std::string& what, const FaultPoint& like, const std::vector<std::string>& errors,
                         std::size_t atMost, Prepare prepare, Attempt attempt) {
        prepare();
        const FaultRun counted = attempt(like);
        ASSERT_FALSE(counted.counts.empty()) << "the phase \"" << like.phase << "\" has not begun";
        ASSERT_FALSE(HasFailure()) << "without any fault";
        std::map<std::string, long> tried;
        for (const FaultPoint& point : pointsOf(counted, like, errors, atMost)) {
            prepare();
            const FaultRun run = attempt(point);
            tried[point.error] += run.hit.empty() ? 0 : 1;
            if (HasFailure()) {
                ADD_FAILURE() << point.text() << ", in " << run.hit << "\n" << run.told.dump();
                return;
            }
        }
        printPoints(what, tried);
    }

    static void expectEnded(const FaultPoint& point, const FaultRun& run) {
        EXPECT_FALSE(run.program.outOfTime) << "hangs";
        if (point.error == "KILL" && !run.hit.empty()) {
            EXPECT_EQ(run.program.signal, 9);
            return;
        }
        EXPECT_EQ(run.program.signal, 0) << "crashes";
        EXPECT_EQ(run.program.status, 0);
        EXPECT_TRUE(run.told.is_object());
    }

    // The entries that the scan offered.
    static Entries entriesOf(const nlohmann::json& told) {
        Entries entries;
        for (const auto& card : told["cards"]) {
            entries.snapshots += card["snapshots"].get<std::int64_t>();
            for (const auto& entry : card["entries"]) {
                const auto path = entry["path"].get<std::string>();
                if (isThere(path)) {
                    ++entries.still;
                } else {
                    ++entries.gone;
                    entries.goneBytes += entry["size"].get<std::int64_t>();
                    entries.gonePaths.insert(path);
                }
            }
        }
        return entries;
    }

    void expectOnlyKnownItemsOffered(const nlohmann::json& told, bool isWhole) const {
        std::vector<fs::path> known = home_.items();
        const std::size_t usual = known.size();
        if (!isWhole) {
            known.push_back(SmallHome::folderOfAnApplication());
        }
        std::size_t offered = 0;
        for (const auto& card : told["cards"]) {
            for (const auto& entry : card["entries"]) {
                EXPECT_THAT(known, ::testing::Contains(fs::path(entry["path"].get<std::string>())));
                ++offered;
            }
        }
        if (isWhole) {
            EXPECT_EQ(offered, usual);
        }
    }

    static void expectCelebrationTellsTheTruth(const nlohmann::json& told, const Entries& entries) {
        if (told["cards"].empty()) {
            EXPECT_FALSE(told.contains("celebration"));
            return;
        }
        ASSERT_TRUE(told.contains("celebration"));
        const auto deleted = static_cast<std::int64_t>(SmallHome::snapshotsDeleted());
        EXPECT_EQ(told["celebration"]["bytes"], entries.goneBytes);
        EXPECT_EQ(told["celebration"]["failures"], entries.still + entries.snapshots - deleted);
        EXPECT_EQ(told["celebration"]["snapshots"], deleted);
    }

    // The newest run in the history lists where each item went.
    static void expectMovesAre(const nlohmann::json& run, const std::set<std::string>& gone) {
        std::set<std::string> originals;
        for (const auto& move : run["moves"]) {
            originals.insert(move["original"].get<std::string>());
            EXPECT_TRUE(isThere(move["trashed"].get<std::string>())) << move;
        }
        EXPECT_EQ(originals, gone);
    }

    // Returns the stored history as a new start reads it.
    static nlohmann::json historyAtNextStart() {
        const std::vector<HistoryEntry> stored = SmallHome::storedHistory();
        const FaultRun next = runDriver({});
        EXPECT_EQ(next.program.status, 0);
        EXPECT_EQ(next.told["history"].size(), stored.size());
        return next.told["history"];
    }

    FaultRun cleanAt(const FaultPoint& point) {
        const FaultRun run = runDriver({"scan", "clean"}, point);
        expectEnded(point, run);
        const bool killed = run.program.signal != 0;
        const bool mayBeTwice = point.old && killed;
        home_.expectNothingLost(!mayBeTwice);
        const nlohmann::json history = historyAtNextStart();
        if (killed || HasFailure()) {
            return run;
        }
        const bool scanWasWhole = run.hit.empty() || point.phase == "clean" || (point.phase == "start" && !point.lasts);
        expectOnlyKnownItemsOffered(run.told, scanWasWhole);
        const Entries entries = entriesOf(run.told);
        expectCelebrationTellsTheTruth(run.told, entries);
        if (run.told["cards"].empty() || HasFailure()) {
            return run;
        }
        expectMovesAre(run.told["history"][0], entries.gonePaths);
        expectStored(point, run, history);
        if (!point.lasts) {
            EXPECT_EQ(namesIn(homeTrash() / "info").size(), namesIn(homeTrash() / "files").size()) << "ghosts";
        }
        if (history.size() == 2 && !entries.gonePaths.empty()) {
            const FaultRun undone = runDriver({"undo"});
            EXPECT_EQ(undone.told["notice"],
                      "All " + std::to_string(entries.gone) + " items are back where they were.");
            home_.expectNothingLost(true);
            if (!point.lasts) {
                home_.expectAllInPlace();
            }
        }
        return run;
    }

    // A run is stored in spite of one failing call: saving is retried at the end.
    static void expectStored(const FaultPoint& point, const FaultRun& run, const nlohmann::json& history) {
        if (!point.lasts) {
            EXPECT_EQ(history, run.told["history"]);
        } else if (history.size() == 2) {
            EXPECT_EQ(history[0], run.told["history"][0]);
        }
    }

    void cleansAtPoints(const std::string& what, const FaultPoint& like, const std::vector<std::string>& errors,
                        std::size_t atMost) {
        atPoints(
            what, like, errors, atMost, [&] { home_.make(); }, [&](const FaultPoint& point) { return cleanAt(point); });
    }

    void undosAtPoints(const std::string& what, const FaultPoint& like, const std::vector<std::string>& errors,
                       std::size_t atMost) {
        atPoints(
            what, like, errors, atMost, [&] { prepareUndo(); }, [&](const FaultPoint& point) { return undoAt(point); });
    }

    void prepareUndo() {
        home_.make();
        const FaultRun run = runDriver({"scan", "clean"});
        ASSERT_EQ(run.told["celebration"]["failures"], 0) << run.told;
    }

    FaultRun undoAt(const FaultPoint& point) {
        const FaultRun run = runDriver({"undo"}, point);
        expectEnded(point, run);
        const bool killed = run.program.signal != 0;
        const std::vector<fs::path> items = home_.items();
        home_.expectNothingLost(!(point.old && killed));
        const nlohmann::json history = historyAtNextStart();
        if (!killed && !HasFailure()) {
            const auto back = static_cast<std::size_t>(std::count_if(items.begin(), items.end(), isThere));
            const bool all = back == items.size();
            const std::string counts = all ? "All " + std::to_string(back) + " items are"
                                           : "Put back " + std::to_string(back) + " of " + std::to_string(items.size());
            EXPECT_THAT(run.told["notice"].get<std::string>(), ::testing::StartsWith(counts));
            EXPECT_EQ(run.told["history"][0]["undone"], all);
            if (!point.lasts) {
                EXPECT_EQ(history, run.told["history"]);
            }
        }
        // The next undo restores what is left, and leaves no record without an item.
        const FaultRun next = runDriver({"undo"});
        EXPECT_EQ(next.program.status, 0);
        home_.expectAllInPlace();
        return run;
    }
};

TEST_F(FaultsTest, AFaultAtTheStartCostsNoFileAndNoHistory) {
    cleansAtPoints("start", {.phase = "start"}, everyError, 20);
}

TEST_F(FaultsTest, AFaultThatLastsFromTheStartCostsNoFileAndNoHistory) {
    cleansAtPoints("start, lasting", {.phase = "start", .lasts = true}, lastingErrors, 10);
}

TEST_F(FaultsTest, AFaultDuringAScanLosesNothing) {
    cleansAtPoints("scan", {.phase = "scan"}, everyError, 25);
}

TEST_F(FaultsTest, AFaultDuringACleanIsCountedAndLosesNothing) {
    cleansAtPoints("clean", {.phase = "clean"}, everyError, 25);
}

TEST_F(FaultsTest, AFaultThatLastsDuringACleanLosesNothing) {
    cleansAtPoints("clean, lasting", {.phase = "clean", .lasts = true}, lastingErrors, 15);
}

TEST_F(FaultsTest, AFaultDuringACleanOnAnOldFileSystemLosesNothing) {
    cleansAtPoints("clean, old file system", {.phase = "clean", .old = true}, everyError, 15);
}

TEST_F(FaultsTest, AFaultDuringAnUndoIsCountedAndTheNextOneFinishesIt) {
    undosAtPoints("undo", {.phase = "undo"}, everyError, 15);
}

TEST_F(FaultsTest, AFaultThatLastsDuringAnUndoLosesNothing) {
    undosAtPoints("undo, lasting", {.phase = "undo", .lasts = true}, lastingErrors, 10);
}

TEST_F(FaultsTest, AFaultDuringAnUndoOnAnOldFileSystemLosesNothing) {
    undosAtPoints("undo, old file system", {.phase = "undo", .old = true}, everyError, 10);
}

TEST_F(FaultsTest, AMoveThatWasMadeThoughItSaysItFailedIsNotTakenBack) {
    for (const bool old : {false, true}) {
        const std::string where = old ? ", made, old file system" : ", made";
        cleansAtPoints("clean" + where, {.phase = "clean", .old = old, .made = true}, answersLost, 5);
        undosAtPoints("undo" + where, {.phase = "undo", .old = old, .made = true}, answersLost, 5);
    }
}

TEST_F(FaultsTest, AnItemWhoseRecordVanishedJustBeforeItCameGetsItAnew) {
    home_.make();
    const FaultRun run = runDriver({"scan", "clean"}, {.phase = "clean", .emptied = "yes"});
    EXPECT_EQ(run.told["celebration"]["failures"], 0);
    home_.expectNothingLost(true);
    EXPECT_EQ(namesIn(homeTrash() / "info").size(), namesIn(homeTrash() / "files").size());
    const FaultRun undone = runDriver({"undo"});
    EXPECT_EQ(undone.told["history"][0]["undone"], true) << undone.told["notice"];
    home_.expectAllInPlace();
}

TEST_F(FaultsTest, AnItemWhoseRecordBecameAnotherItemsGetsAnotherName) {
    home_.make();
    const FaultRun run = runDriver({"scan", "clean"}, {.phase = "clean", .emptied = "taken"});
    EXPECT_EQ(run.told["celebration"]["failures"], 0);
    home_.expectNothingLost(true);
    const FaultRun undone = runDriver({"undo"});
    EXPECT_EQ(undone.told["history"][0]["undone"], true) << undone.told["notice"];
    for (const fs::path& item : home_.items()) {
        EXPECT_TRUE(isThere(item)) << item;
    }
}

TEST_F(FaultsTest, AnItemThatCannotBeKeptOnRecordGoesBack) {
    home_.make();
    const FaultRun run = runDriver({"scan", "clean"}, {.phase = "clean", .emptied = "always"});
    EXPECT_EQ(run.told["celebration"]["bytes"], 0);
    home_.expectNothingLost(true);
    for (const fs::path& item : home_.items()) {
        EXPECT_TRUE(isThere(item)) << item;
    }
}

TEST_F(FaultsTest, AFileOfTheSameInodeNumberInTheItemsPlaceCostsNoFile) {
    prepareUndo();
    const fs::path place = testHome() / "Library/Caches/Fetcher.db";
    const std::vector<fs::path> trashed = SmallHome::trashedFrom(place);
    ASSERT_EQ(trashed.size(), 1U);
    const std::string content = contentOf(trashed[0]);
    writeFile(place, std::string(content.size(), '-'));
    fs::create_hard_link(place, testHome() / "another name");
    fs::create_hard_link(trashed[0], testHome() / "a third name");
    const FaultRun run = runDriver({"undo"}, {.alike = true});
    EXPECT_EQ(run.told["history"][0]["undone"], false);
    EXPECT_EQ(contentOf(trashed[0]), content);
    EXPECT_EQ(SmallHome::trashedFrom(place), trashed) << "its record stays";
}

// The Trash contains something without a record, with the name and inode number of an item.
TEST_F(FaultsTest, AFileOfTheSameInodeNumberInTheTrashCostsNoFile) {
    home_.make();
    writeFile(homeTrash() / "files/Fetcher.db", "an orphan");
    runDriver({"scan", "clean"}, {.old = true, .alike = true});
    home_.expectNothingLost(true);
    EXPECT_EQ(contentOf(homeTrash() / "files/Fetcher.db"), "an orphan");
}

// cleaning_killed_test.cpp kills a clean and an undo at every system call; this covers what it does not.
TEST_F(FaultsTest, AStartOrScanKilledAnywhereLosesNothing) {
    cleansAtPoints("start, killed", {.phase = "start"}, kill, 5);
    cleansAtPoints("scan, killed", {.phase = "scan"}, kill, 5);
}

TEST_F(FaultsTest, ACleanKilledOnAnOldFileSystemLosesNothing) {
    cleansAtPoints("clean, killed, old", {.phase = "clean", .old = true}, kill, 10);
}

TEST_F(FaultsTest, AnUndoKilledOnAnOldFileSystemIsFinishedByTheNext) {
    undosAtPoints("undo, killed, old", {.phase = "undo", .old = true}, kill, 10);
}

}  // namespace
}  // namespace vesk

// A clean leaves what programs have in use.

#include <gmock/gmock.h>

#include <fcntl.h>

#include <cerrno>

#include "platform/trash/trash.h"
#include "state/cleaning_worker.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class InUseTest : public TemporaryHome {
protected:
    InUseTest() {
        tools_.moveToTrash = moveToTrash;
        tools_.putBack = [](const TrashedItem& item) { return restoreItem(item); };
        tools_.settle = [this](const std::vector<std::filesystem::path>& trashed) { settled_ = trashed; };
        tools_.lookAtUse = [this] {
            ++looks_;
            return OpenFiles(used_);
        };
        for (const char* name : {"a", "b", "c"}) {
            makeFile(junk() / name / "file");
            workList_.push_back({junk() / name, folderIdentity(junk()), {}, 1});
        }
    }

    static std::filesystem::path junk() { return testHome() / "Junk"; }

    // From now on a program has this open.
    void open(const std::filesystem::path& file) {
        FilePlace place;
        ASSERT_TRUE(findPlace(file.c_str(), place));
        used_.push_back({place.device, place.inode, file.string(), true});
    }

    std::vector<std::string> run() {
        runCleaning(workList_, {}, tools_, log_);
        std::vector<std::string> moved;
        for (const HistoryEntry::Move& move : log_.result().moves) {
            moved.push_back(std::filesystem::path(move.original).filename().string());
        }
        EXPECT_EQ(log_.result().receipt.size(), moved.size());
        EXPECT_EQ(settled_.size(), moved.size());
        return moved;
    }

    CleaningTools tools_;
    CleaningLog log_;
    std::vector<SeenItem> workList_;
    std::vector<UsedFile> used_;
    std::vector<std::filesystem::path> settled_;
    int looks_ = 0;
};

TEST_F(InUseTest, WhatAProgramHasOpenIsNotMovedAndCounts) {
    open(junk() / "b/file");
    EXPECT_THAT(run(), ElementsAre("a", "c"));
    EXPECT_EQ(log_.result().failures, 1);
    EXPECT_TRUE(std::filesystem::exists(junk() / "b/file"));
    EXPECT_FALSE(std::filesystem::exists(junk() / "a"));
}

// Seen without the second look: the program's file lay in the Trash, and the program went on writing into it.
TEST_F(InUseTest, WhatIsOpenedWhileItMovesGoesBackAndCounts) {
    tools_.moveToTrash = [this](const SeenItem& item) {
        const TrashOutcome outcome = moveToTrash(item);
        if (item.path.filename() == "b") {
            open(outcome.place / "file");
        }
        return outcome;
    };
    EXPECT_THAT(run(), ElementsAre("a", "c"));
    EXPECT_EQ(log_.result().failures, 1);
    EXPECT_TRUE(std::filesystem::exists(junk() / "b/file"));
    EXPECT_GE(looks_, 2);
}

TEST_F(InUseTest, WhatCannotGoBackStaysOnRecord) {
    tools_.moveToTrash = [this](const SeenItem& item) {
        const TrashOutcome outcome = moveToTrash(item);
        open(outcome.place / "file");
        makeFile(item.path / "anew");
        return outcome;
    };
    EXPECT_THAT(run(), ElementsAre("a", "b", "c"));
    EXPECT_EQ(log_.result().failures, 0);
    EXPECT_TRUE(std::filesystem::exists(junk() / "b/anew"));
}

TEST_F(InUseTest, AStoppedRunLooksOnceMore) {
    tools_.moveToTrash = [this](const SeenItem& item) {
        const TrashOutcome outcome = moveToTrash(item);
        open(outcome.place / "file");
        return outcome;
    };
    tools_.stopRequested = [this] { return !log_.result().moves.empty(); };
    EXPECT_THAT(run(), IsEmpty());
    EXPECT_TRUE(std::filesystem::exists(junk() / "a/file"));
    EXPECT_EQ(log_.result().failures, 1);
}

TEST_F(InUseTest, OneLookServesManyItems) {
    for (int i = 0; i < 500; ++i) {
        makeFile(junk() / std::to_string(i), 1);
        workList_.push_back({junk() / std::to_string(i), folderIdentity(junk()), {}, 1});
    }
    EXPECT_EQ(run().size(), 503U);
    EXPECT_LT(looks_, 503);
}

}  // namespace
}  // namespace vesk

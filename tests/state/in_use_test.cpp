// A clean does not move what programs have in use.

#include <gmock/gmock.h>

#include <fcntl.h>

#include <cerrno>
#include <set>
#include <string>

#include "platform/files/descriptor.h"
#include "platform/trash/trash.h"
#include "state/cleaning_worker.h"
#include "support/temporary_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class InUseTest : public TemporaryHome {
protected:
    InUseTest() {
        tools_.moveToTrash = moveToTrash;
        tools_.restore = [](const TrashedItem& item) { return restoreItem(item); };
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

    OpenWatch watch_;
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

// Seen without the second check: the program went on writing to its file in the Trash.
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

TEST_F(InUseTest, WhatIsOpenedWhileProcessesAreLookedAtStays) {
    tools_.openWatch = &watch_;
    Descriptor opened;
    tools_.lookAtUse = [&] {
        OpenFiles seen(used_);
        if (++looks_ == 1) {  // after its process was looked at
            opened = Descriptor(::open((junk() / "b/file").c_str(), O_RDONLY | O_CLOEXEC));
            open(junk() / "b/file");
        }
        return seen;
    };
    std::vector<std::string> tried;
    tools_.moveToTrash = [&](const SeenItem& item) {
        tried.push_back(item.path.filename());
        return moveToTrash(item);
    };
    EXPECT_THAT(run(), ElementsAre("a", "c"));
    EXPECT_THAT(tried, ElementsAre("a", "c"));
    EXPECT_EQ(log_.result().failures, 1);
}

// Seen without it: a database that a program opened while the item's record was written lost what was committed during
// the move.
TEST_F(InUseTest, WhatIsOpenedRightBeforeItsMoveStays) {
    const auto file = junk() / "b/file";
    TrashBatch batch({}, [&](const auto& item) { return item.filename() == "b" && watch_.noticed(item); });
    tools_.openWatch = &watch_;
    tools_.moveToTrash = [&](const SeenItem& item) {
        const Descriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
        return batch.move(item);
    };
    EXPECT_THAT(run(), ElementsAre("a", "c"));
    EXPECT_EQ(log_.result().failures, 1);
    EXPECT_THAT(namesIn(homeTrash() / "info"), ::testing::SizeIs(2));
}

// Items are watched in groups; the next one is prepared while this one moves.
TEST_F(InUseTest, AmongThousandsTooWhatIsOpenedRightBeforeItsMoveStays) {
    constexpr int many = 2'500;
    workList_.clear();
    for (int i = 0; i < many; ++i) {
        makeFile(junk() / std::to_string(i));
        workList_.push_back({junk() / std::to_string(i), folderIdentity(junk()), {}, 1});
    }
    const std::set<std::string> opened = {"7", "1500", "2499"};
    TrashBatch batch({}, [&](const auto& item) { return watch_.noticed(item); });
    tools_.openWatch = &watch_;
    tools_.moveToTrash = [&](const SeenItem& item) {
        if (opened.contains(item.path.filename())) {
            EXPECT_TRUE(Descriptor(::open(item.path.c_str(), O_RDONLY | O_CLOEXEC)));
        }
        return batch.move(item);
    };
    EXPECT_THAT(run(), ::testing::SizeIs(many - opened.size()));
    EXPECT_EQ(log_.result().failures, static_cast<int>(opened.size()));
    for (const std::string& name : opened) {
        EXPECT_TRUE(std::filesystem::exists(junk() / name)) << name;
    }
}

TEST_F(InUseTest, WhatIsOpenedAllTheTimeStays) {
    tools_.openWatch = &watch_;
    tools_.lookAtUse = [&] {
        const Descriptor opened(::open((junk() / "b/file").c_str(), O_RDONLY | O_CLOEXEC));
        ++looks_;
        return OpenFiles(used_);
    };
    EXPECT_THAT(run(), ElementsAre("a", "c"));
    EXPECT_LE(looks_, 8);
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

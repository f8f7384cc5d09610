// A system that allows no more threads: a scan goes on when it does again, a clean and an undo leave everything as it
// was and say so.

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <unistd.h>

#include <QSignalSpy>

#include "state/cleaning_fixture.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class NoThreadsTest : public CleaningTest {
protected:
    void SetUp() override {
        if (geteuid() == 0) {
            GTEST_SKIP() << "the number of root's threads has no limit";
        }
        getrlimit(RLIMIT_NPROC, &before_);
        writeFile(junk() / "a", "content of a");
        offerItemsOf(junk());
    }
    void TearDown() override { allowThreads(true); }

    void allowThreads(bool allowed) const {
        const rlimit none{0, before_.rlim_max};
        setrlimit(RLIMIT_NPROC, allowed ? &before_ : &none);
    }

    rlimit before_{};
};

TEST_F(NoThreadsTest, AScanGoesOnWhenThereAreThreadsAgain) {
    Store& store = makeStore();
    offerItemsOf(testHome() / "Other", "other");
    allowThreads(false);
    store.scan();
    EXPECT_FALSE(waitFor([&] { return !store.busy(); }, std::chrono::milliseconds(300)));
    EXPECT_EQ(store.progress(), 0);
    allowThreads(true);
    ASSERT_TRUE(waitFor([&] { return !store.busy(); }));
    EXPECT_EQ(store.cards().size(), 1U);
    EXPECT_EQ(store.progress(), 1);
}

TEST_F(NoThreadsTest, AScanThatNeverBeganCanBeEnded) {
    Store& store = makeStore();
    allowThreads(false);
    store.scan();
    store_.reset();
}

TEST_F(NoThreadsTest, ACleanThatCannotStartLeavesEverythingAndSaysSo) {
    Store& store = scannedStore();
    const std::vector<std::string> selected = {store.selectedCards().at(0).id};
    allowThreads(false);
    store.performClean();
    EXPECT_FALSE(store.busy());
    EXPECT_THAT(store.notice().value_or(""), HasSubstr("could not be started"));
    EXPECT_EQ(contentOf(junk() / "a"), "content of a");
    EXPECT_FALSE(isThere(homeTrash()));
    EXPECT_THAT(store.history(), IsEmpty());
    EXPECT_FALSE(store.celebration());
    EXPECT_EQ(store.selectedCards().at(0).id, selected[0]);
    allowThreads(true);
    clean();
    EXPECT_EQ(store.history().size(), 1U);
}

TEST_F(NoThreadsTest, AnUndoThatCannotStartLeavesEverythingAndSaysSo) {
    Store& store = scannedStore();
    clean();
    const std::vector<HistoryEntry> before = store.history();
    allowThreads(false);
    store.undo(before.at(0).id);
    EXPECT_FALSE(store.busy());
    EXPECT_THAT(store.notice().value_or(""), HasSubstr("could not be started"));
    EXPECT_EQ(store.history(), before);
    EXPECT_EQ(contentOf(trashFiles() / "a"), "content of a");
    allowThreads(true);
    undo();
    EXPECT_TRUE(store.history().at(0).undone);
    EXPECT_EQ(contentOf(junk() / "a"), "content of a");
}

}  // namespace
}  // namespace vesk

// Quitting during a clean: the current step is finished, the run is recorded, and a hanging tool is not waited for.

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <atomic>
#include <condition_variable>
#include <thread>

#include "state/cleaning_fixture.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

using namespace testing;

TEST_F(CleaningTest, QuittingEndsAPreviewAtOnceAndRecordsIt) {
    writeFile(junk() / "a", "a");
    offerItemsOf(junk());
    Store& store = scannedStore();
    store.setPreviewOnly(true);
    QElapsedTimer elapsed;
    elapsed.start();
    store.performClean();
    store.finish();
    EXPECT_LT(elapsed.elapsed(), 800);
    EXPECT_FALSE(store.busy());
    EXPECT_TRUE(storedHistory().at(0).preview);
}

TEST_F(CleaningTest, QuittingFinishesTheStepUnderWayAndRecordsTheRun) {
    // The tool hangs at the first snapshot; the second must not be tried.
    writeFile(junk() / "a", "a");
    std::atomic<int> calls = 0;
    sources_.runTool = [&](const std::string&, const std::vector<std::string>&) {
        ++calls;
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        return 0;
    };
    offerItemsOf(junk());
    offer([](Probe&) { return std::vector<Card>{snapshotCard({"1", "2", "3"})}; });
    Store& store = scannedStore();
    store.performClean();
    ASSERT_TRUE(waitFor([&] { return calls == 1; }));
    store_.reset();
    EXPECT_EQ(calls, 1);
    ASSERT_EQ(storedHistory().size(), 1U);
    EXPECT_EQ(storedHistory()[0].moves.size(), 1U);
    EXPECT_EQ(storedHistory()[0].snapshotsRemoved, 1);
    EXPECT_FALSE(isThere(junk() / "a"));
}

TEST_F(CleaningTest, QuittingDoesNotWaitForAToolThatHangs) {
    writeFile(junk() / "a", "a");
    // Shared, since the tool may outlive the test.
    struct Hanging {
        std::mutex lock;
        std::condition_variable released;
        bool release = false;
        bool called = false;
        bool ended = false;
    };
    const auto hanging = std::make_shared<Hanging>();
    sources_.runTool = [hanging](const std::string&, const std::vector<std::string>&) {
        std::unique_lock guard(hanging->lock);
        hanging->called = true;
        hanging->released.wait(guard, [&] { return hanging->release; });
        hanging->ended = true;
        hanging->released.notify_all();
        return 0;
    };
    offerItemsOf(junk());
    offer([](Probe&) { return std::vector<Card>{snapshotCard({"1"})}; });
    Store& store = scannedStore();
    store.performClean();
    ASSERT_TRUE(waitFor([&] {
        const std::lock_guard guard(hanging->lock);
        return hanging->called;
    }));
    QElapsedTimer elapsed;
    elapsed.start();
    store_.reset();
    EXPECT_LT(elapsed.elapsed(), 2000);
    ASSERT_EQ(storedHistory().size(), 1U);
    EXPECT_EQ(storedHistory()[0].moves.size(), 1U) << "what was moved is known";
    EXPECT_EQ(storedHistory()[0].snapshotsRemoved, 0);
    std::unique_lock guard(hanging->lock);
    hanging->release = true;
    hanging->released.notify_all();
    EXPECT_TRUE(hanging->released.wait_for(guard, std::chrono::seconds(5), [&] { return hanging->ended; }));
}

}  // namespace
}  // namespace vesk

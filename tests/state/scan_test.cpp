#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QThread>
#include <atomic>
#include <latch>
#include <semaphore>

#include "core/probe.h"
#include "platform/threads/background.h"
#include "state/plain_cards.h"
#include "state/store.h"
#include "support/temporary_home.h"
#include "support/waiting.h"

namespace vesk {
namespace {

using ::testing::ElementsAre;
using testing::makeFile;
using testing::ruleOf;
using testing::testHome;
using testing::waitFor;

Card cardOf(std::string id, double confidence, std::int64_t mebibytes = 1, Bucket bucket = Bucket::smart) {
    Card card = testing::plainCard(std::move(id));
    card.bucket = bucket;
    card.confidence = confidence;
    card.entries.push_back(Entry{Uuid::random(), "/item", "item", mebibytes << 20, {}});
    card.selected = bucket == Bucket::safe;
    return card;
}

class ScanTest : public testing::TemporaryHome {
protected:
    explicit ScanTest() {
        Store::Sources sources;
        sources.catalogue = [this] { return rules; };
        sources.volume = [this] {
            ++volumeReads;
            return VolumeFigures{1000, 400};
        };
        store = std::make_unique<Store>(std::move(sources));
        volumeReads = 0;
    }

    void scan() {
        store->scan();
        ASSERT_TRUE(finished());
    }
    bool finished() {
        return waitFor([&] { return store->phase() == Store::Phase::done; });
    }
    std::vector<std::string> ids() const {
        std::vector<std::string> result;
        for (const Card& card : store->cards()) {
            result.push_back(card.id);
        }
        return result;
    }

    std::vector<Spec> rules;
    int volumeReads = 0;
    std::unique_ptr<Store> store;
};

TEST_F(ScanTest, WithoutRulesEndsAtOnce) {
    store->scan();
    EXPECT_EQ(store->phase(), Store::Phase::done);
    EXPECT_TRUE(store->cards().empty());
    EXPECT_TRUE(store->blockedAreas().empty());
    EXPECT_EQ(store->progress(), 0.0);
    EXPECT_EQ(volumeReads, 2);
}

TEST_F(ScanTest, ProgressIsTheFractionOfRulesFinished) {
    for (int i = 0; i < 13; ++i) {
        rules.push_back(ruleOf("rule", {}));
    }
    std::vector<double> seen;
    QObject::connect(store.get(), &Store::progressChanged, [&] { seen.push_back(store->progress()); });
    scan();
    ASSERT_EQ(seen.size(), 14U);
    for (int i = 0; i <= 13; ++i) {
        EXPECT_DOUBLE_EQ(seen[static_cast<std::size_t>(i)], i / 13.0);
    }
}

TEST_F(ScanTest, CardsAreInOrderOfPriorityWhoeverFinishesFirst) {
    std::binary_semaphore lowIsDone(0);
    rules = {{"late",
              [&](Probe&) {
                  lowIsDone.acquire();
                  return std::vector{cardOf("high", 0.9)};
              }},
             {"early", [&](Probe&) {
                  lowIsDone.release();
                  return std::vector{cardOf("low", 0.1), cardOf("middle", 0.5)};
              }}};
    scan();
    EXPECT_THAT(ids(), ElementsAre("high", "middle", "low"));
}

TEST_F(ScanTest, EqualPrioritiesKeepTheOrderOfFinishing) {
    rules = {ruleOf("one", {cardOf("a", 0.5), cardOf("b", 0.5), cardOf("c", 0.5)})};
    scan();
    EXPECT_THAT(ids(), ElementsAre("a", "b", "c"));
}

TEST_F(ScanTest, BlockedAreasAreSortedAndNotMerged) {
    rules = {ruleOf("B", {}, true), ruleOf("A", {}, true), ruleOf("C", {}, false), ruleOf("A", {}, true)};
    scan();
    EXPECT_THAT(store->blockedAreas(), ElementsAre("A", "A", "B"));
    rules.clear();
    scan();
    EXPECT_TRUE(store->blockedAreas().empty());
}

TEST_F(ScanTest, ASecondScanMeanwhileIsIgnored) {
    std::binary_semaphore goOn(0);
    std::atomic<int> runs = 0;
    rules = {{"waits", [&](Probe&) {
                  ++runs;
                  goOn.acquire();
                  return std::vector<Card>{};
              }}};
    store->scan();
    EXPECT_TRUE(store->busy());
    EXPECT_FALSE(store->cleaning());
    store->scan();
    goOn.release();
    ASSERT_TRUE(finished());
    EXPECT_EQ(runs, 1);
    EXPECT_FALSE(store->busy());
}

TEST_F(ScanTest, ThePreviousResultStaysUntilTheNextIsThere) {
    std::binary_semaphore goOn(0);
    rules = {ruleOf("first", {cardOf("old", 0.5)}, true)};
    scan();
    rules = {{"second", [&](Probe&) {
                  goOn.acquire();
                  return std::vector{cardOf("new", 0.5)};
              }}};
    store->scan();
    EXPECT_THAT(ids(), ElementsAre("old"));
    EXPECT_THAT(store->blockedAreas(), ElementsAre("first"));
    EXPECT_EQ(store->progress(), 0.0);
    goOn.release();
    ASSERT_TRUE(finished());
    EXPECT_THAT(ids(), ElementsAre("new"));
    EXPECT_TRUE(store->blockedAreas().empty());
}

TEST_F(ScanTest, ARescanStartsTheSelectionAfresh) {
    rules = {ruleOf("rule", {cardOf("safe", 0.5, 1, Bucket::safe), cardOf("smart", 0.4)})};
    scan();
    store->setSelected("safe", false);
    store->setSelected("smart", true);
    scan();
    EXPECT_TRUE(store->card("safe")->selected);
    EXPECT_FALSE(store->card("smart")->selected);
}

TEST_F(ScanTest, ListsChangeByRows) {
    rules = {ruleOf("rule", {cardOf("a", 0.9), cardOf("b", 0.8), cardOf("c", 0.7), cardOf("d", 0.6)})};
    scan();
    auto* list = store->property("cards").value<CardList*>();
    const QSignalSpy resets(list, &CardList::modelReset);
    const QSignalSpy removed(list, &CardList::rowsRemoved);
    const QSignalSpy inserted(list, &CardList::rowsInserted);
    const QSignalSpy moved(list, &CardList::rowsMoved);
    rules = {ruleOf("rule", {cardOf("d", 0.9), cardOf("a", 0.8), cardOf("e", 0.7), cardOf("c", 0.6)})};
    scan();
    EXPECT_THAT(ids(), ElementsAre("d", "a", "e", "c"));
    EXPECT_EQ(resets.count(), 0);
    EXPECT_EQ(removed.count(), 1);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(moved.count(), 1);
    EXPECT_EQ(list->count(), 4);
    EXPECT_EQ(list->data(list->index(0), CardList::CardIdRole).toString(), "d");
}

TEST_F(ScanTest, EachRuleHasItsOwnProbeOnTheSharedTracker) {
    makeFile(testHome() / "a", 5'000);
    makeFile(testHome() / "b", 5'000);
    std::mutex lock;
    std::set<const Probe*> probes;
    std::set<const Tracker*> trackers;
    std::latch together(2);
    const auto measuring = [&](const char* name) {
        return [&, name](Probe& probe) {
            together.arrive_and_wait();  // both run at once, or this never ends
            probe.measure(testHome() / name);
            const std::lock_guard guard(lock);
            probes.insert(&probe);
            trackers.insert(probe.tracker.get());
            return std::vector<Card>{};
        };
    };
    rules = {{"a", measuring("a")}, {"b", measuring("b")}};
    scan();
    EXPECT_EQ(probes.size(), 2U);
    EXPECT_EQ(trackers.size(), 1U);
    EXPECT_EQ(store->trackerCounts().files, 2);
    EXPECT_EQ(store->trackerCounts().bytes, testing::allocated(testHome() / "a") * 2);
}

TEST_F(ScanTest, RulesRunInTheBackgroundAndResultsOnTheMainThread) {
    std::atomic<bool> background = false;
    std::atomic<QThread*> ruleThread = nullptr;
    rules = {{"rule", [&](Probe&) {
                  background = inBackground();
                  ruleThread = QThread::currentThread();
                  return std::vector<Card>{};
              }}};
    QThread* told = nullptr;
    QObject::connect(store.get(), &Store::progressChanged, [&] { told = QThread::currentThread(); });
    scan();
    EXPECT_TRUE(background);
    EXPECT_NE(ruleThread, QThread::currentThread());
    EXPECT_EQ(told, QThread::currentThread());
    EXPECT_FALSE(inBackground());
}

TEST_F(ScanTest, FiguresArePolledWhileItRuns) {
    makeFile(testHome() / "file", 5'000);
    std::binary_semaphore goOn(0);
    rules = {{"rule", [&](Probe& probe) {
                  probe.measure(testHome() / "file");
                  goOn.acquire();
                  return std::vector<Card>{};
              }}};
    store->scan();
    EXPECT_TRUE(waitFor([&] { return store->filesSeen() == 1; }));
    EXPECT_EQ(store->foundBytes(), testing::allocated(testHome() / "file"));
    EXPECT_EQ(store->phase(), Store::Phase::scanning);
    goOn.release();
    ASSERT_TRUE(finished());
    const QSignalSpy later(store.get(), &Store::foundBytesChanged);
    EXPECT_FALSE(waitFor([&] { return later.count() > 0; }, std::chrono::milliseconds(250)));
}

TEST_F(ScanTest, FiguresArePublishedAtMostTenTimesASecond) {
    std::binary_semaphore goOn(0);
    rules = {{"rule", [&](Probe& probe) {
                  for (int i = 0; i < 100'000; ++i) {
                      probe.tracker->add({1, 1});
                  }
                  goOn.acquire();
                  return std::vector<Card>{};
              }}};
    const QSignalSpy published(store.get(), &Store::filesSeenChanged);
    QElapsedTimer time;
    time.start();
    store->scan();
    waitFor([] { return false; }, std::chrono::milliseconds(1'000));
    // Two come at the start, before the first tenth of a second is over.
    EXPECT_LE(published.count(), time.elapsed() / 100 + 2);
    EXPECT_GE(published.count(), 3);
    goOn.release();
    ASSERT_TRUE(finished());
}

TEST_F(ScanTest, AStarvedEventLoopPublishesNoFasterAfterwards) {
    std::binary_semaphore goOn(0);
    rules = {{"rule", [&](Probe&) {
                  goOn.acquire();
                  return std::vector<Card>{};
              }}};
    store->scan();
    std::vector<qint64> gaps;
    QElapsedTimer sinceLast;
    QObject::connect(store.get(), &Store::filesSeenChanged, [&] {
        if (sinceLast.isValid()) {
            gaps.push_back(sinceLast.elapsed());
        }
        sinceLast.start();
    });
    for (int i = 0; i < 4; ++i) {
        QThread::msleep(150);  // the main thread does something else
        waitFor([] { return false; }, std::chrono::milliseconds(120));
    }
    goOn.release();
    ASSERT_TRUE(finished());
    EXPECT_GE(gaps.size(), 2U);
    EXPECT_THAT(gaps, ::testing::Each(::testing::Ge(100)));
}

TEST_F(ScanTest, ReadsTheVolumeBeforeAndAfter) {
    scan();
    EXPECT_EQ(volumeReads, 2);
}

TEST_F(ScanTest, AStoreMayGoWhileAScanRuns) {
    auto goOn = std::make_shared<std::binary_semaphore>(0);
    rules = {{"waits", [goOn](Probe&) {
                  goOn->acquire();
                  return std::vector<Card>{};
              }}};
    store->scan();
    store.reset();
    goOn->release();
    waitFor([] { return false; }, std::chrono::milliseconds(50));
}

}  // namespace
}  // namespace vesk

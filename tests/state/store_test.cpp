#include "state/store.h"

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <limits>

#include "state/plain_cards.h"
#include "support/temporary_home.h"
#include "support/waiting.h"

namespace vesk {
namespace {

using ::testing::ElementsAre;
using testing::ruleOf;
using testing::waitFor;

Card cardOf(std::string id, Bucket bucket, std::int64_t size, bool selected, std::vector<std::string> snapshots = {}) {
    Card card = testing::plainCard(std::move(id));
    card.bucket = bucket;
    card.entries.push_back(Entry{Uuid::random(), "/item", "item", size, {}});
    card.snapshotIDs = std::move(snapshots);
    card.selected = selected;
    return card;
}

class StoreTest : public testing::TemporaryHome {
protected:
    /// A store with these rules and this volume.
    std::unique_ptr<Store> makeStore(std::vector<Spec> rules = {}, VolumeFigures volume = {1000, 400}) {
        Store::Sources sources;
        sources.catalogue = [rules = std::move(rules)] { return rules; };
        sources.volume = [volume] { return volume; };
        return std::make_unique<Store>(std::move(sources));
    }

    std::unique_ptr<Store> scannedStore(std::vector<Card> cards, VolumeFigures volume = {1000, 400}) {
        auto store = makeStore({ruleOf("rule", std::move(cards))}, volume);
        store->scan();
        EXPECT_TRUE(waitFor([&] { return store->phase() == Store::Phase::done; }));
        return store;
    }

    static std::vector<std::string> selectedIds(const Store& store) {
        std::vector<std::string> ids;
        for (const Card& card : store.selectedCards()) {
            ids.push_back(card.id);
        }
        return ids;
    }
};

TEST_F(StoreTest, StartsIdleWithTheVolumesFigures) {
    const auto store = makeStore({}, {123, 45});
    EXPECT_EQ(store->phase(), Store::Phase::idle);
    EXPECT_TRUE(store->cards().empty());
    EXPECT_TRUE(store->blockedAreas().empty());
    EXPECT_EQ(store->progress(), 0.0);
    EXPECT_EQ(store->foundBytes(), 0);
    EXPECT_EQ(store->filesSeen(), 0);
    EXPECT_EQ(store->capacity(), 123);
    EXPECT_EQ(store->free(), 45);
    EXPECT_FALSE(store->cleaning());
    EXPECT_FALSE(store->showConfirm());
    EXPECT_FALSE(store->detailID());
    EXPECT_FALSE(store->notice());
    EXPECT_FALSE(store->previewOnly());
    EXPECT_FALSE(store->busy());
}

TEST_F(StoreTest, TellsTheTickedCardsByTitleAndTheFirstOfThem) {
    std::vector<Card> cards = {cardOf("one", Bucket::smart, 3, false), cardOf("two", Bucket::safe, 2, true),
                               cardOf("three", Bucket::safe, 1, true)};
    for (Card& card : cards) {
        card.title = "Title of " + card.id;
    }
    const auto store = scannedStore(cards);
    const auto* list = store->property("cards").value<CardList*>();
    const QSignalSpy totals(store.get(), &Store::totalsChanged);
    EXPECT_EQ(store->property("selectedTitles").toStringList(),
              QStringList({QStringLiteral("Title of two"), QStringLiteral("Title of three")}));
    EXPECT_EQ(list->firstSelected(), 1);
    store->setSelected(QStringLiteral("two"), false);
    EXPECT_EQ(totals.count(), 1);
    EXPECT_EQ(list->firstSelected(), 2);
    store->setSelected(QStringLiteral("three"), false);
    EXPECT_TRUE(store->property("selectedTitles").toStringList().isEmpty());
    EXPECT_EQ(list->firstSelected(), -1);
}

TEST_F(StoreTest, ReadsTheRealVolumeByDefault) {
    const Store store;
    const VolumeFigures figures = readVolumeFigures(testing::testRoot());
    EXPECT_EQ(store.capacity(), figures.totalCapacity);
    EXPECT_GT(store.capacity(), 1);
    EXPECT_GT(store.free(), 0);
}

TEST_F(StoreTest, AnUnreadableVolumeIsDivisibleAndFull) {
    EXPECT_FALSE(readVolumeFigures(testing::testHome() / "missing").totalCapacity);
    const auto store = makeStore({}, {});
    EXPECT_EQ(store->capacity(), 1);
    EXPECT_EQ(store->free(), 0);
    EXPECT_EQ(store->personalBytes(), 1);
}

TEST_F(StoreTest, TotalsAreByBucket) {
    const auto store = scannedStore({cardOf("a", Bucket::safe, 10, true), cardOf("b", Bucket::safe, 5, false),
                                     cardOf("c", Bucket::smart, 100, false), cardOf("d", Bucket::personal, 70, true)});
    EXPECT_EQ(store->safeBytes(), 15);
    EXPECT_EQ(store->smartBytes(), 100);
    EXPECT_EQ(store->personalBytes(), 1000 - 400 - 15 - 100);
    EXPECT_EQ(store->selectedBytes(), 80);
    EXPECT_EQ(store->selectedCount(), 2);
}

TEST_F(StoreTest, PersonalBytesAreNeverNegative) {
    const auto store = scannedStore({cardOf("a", Bucket::safe, 500, true), cardOf("b", Bucket::smart, 500, true)});
    EXPECT_EQ(store->personalBytes(), 0);
}

TEST_F(StoreTest, SnapshotsCountOnlyOnTickedCards) {
    const auto store = scannedStore(
        {cardOf("a", Bucket::safe, 1, true, {"x", "y"}), cardOf("b", Bucket::safe, 1, false, {"1", "2", "3"})});
    EXPECT_EQ(store->selectedSnapshots(), 2);
    store->setSelected("b", true);
    EXPECT_EQ(store->selectedSnapshots(), 5);
}

TEST_F(StoreTest, FindsACardByItsId) {
    const auto store = scannedStore({cardOf("a", Bucket::safe, 1, true)});
    ASSERT_TRUE(store->card("a"));
    EXPECT_EQ(store->card("a")->title, "a");
    EXPECT_FALSE(store->card("b"));
}

TEST_F(StoreTest, TickingOneCardChangesOneRow) {
    const auto store = scannedStore({cardOf("a", Bucket::safe, 3, true), cardOf("b", Bucket::smart, 2, false),
                                     cardOf("c", Bucket::smart, 1, false)});
    const auto* list = store->property("cards").value<CardList*>();
    const QSignalSpy rows(list, &CardList::dataChanged);
    const QSignalSpy changes(store.get(), &Store::cardsChanged);
    store->setSelected("b", true);
    EXPECT_THAT(selectedIds(*store), ElementsAre("a", "b"));
    ASSERT_EQ(rows.count(), 1);
    EXPECT_EQ(rows[0][0].toModelIndex().row(), 1);
    EXPECT_EQ(rows[0][1].toModelIndex().row(), 1);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(StoreTest, TickingAnUnknownCardDoesNothing) {
    const auto store = scannedStore({cardOf("a", Bucket::safe, 1, true)});
    const QSignalSpy changes(store.get(), &Store::cardsChanged);
    store->setSelected("z", false);
    EXPECT_THAT(selectedIds(*store), ElementsAre("a"));
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(StoreTest, SafeOnlyReplacesTheSelection) {
    const auto store = scannedStore({cardOf("safe", Bucket::safe, 3, true), cardOf("smart", Bucket::smart, 2, false),
                                     cardOf("own", Bucket::personal, 1, false)});
    store->setSelected("safe", false);
    store->setSelected("smart", true);
    store->setSelected("own", true);
    store->selectSafeOnly();
    EXPECT_THAT(selectedIds(*store), ElementsAre("safe"));
}

TEST_F(StoreTest, SafeOnlyWithoutCardsDoesNothing) {
    const auto store = makeStore();
    const QSignalSpy changes(store.get(), &Store::cardsChanged);
    store->selectSafeOnly();
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(StoreTest, EveryPublishedFieldTellsOfItsChange) {
    const auto store = makeStore({ruleOf("rule", {cardOf("a", Bucket::safe, 1, true)})});
    const QMetaObject* meta = store->metaObject();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        EXPECT_TRUE(property.isConstant() || property.hasNotifySignal()) << property.name();
    }
    QSignalSpy confirm(store.get(), &Store::showConfirmChanged);
    QSignalSpy detail(store.get(), &Store::detailIDChanged);
    QSignalSpy notice(store.get(), &Store::noticeChanged);
    store->setShowConfirm(true);
    store->setDetailID("a");
    store->setNotice("Hello");
    EXPECT_TRUE(store->showConfirm());
    EXPECT_EQ(store->detailID(), "a");
    EXPECT_EQ(store->notice(), "Hello");
    EXPECT_EQ(confirm.count() + detail.count() + notice.count(), 3);
    store->setProperty("detailID", QString());
    store->setProperty("notice", QString());
    EXPECT_FALSE(store->detailID());
    EXPECT_FALSE(store->notice());
}

TEST_F(StoreTest, PreviewOnlyIsKept) {
    makeStore()->setPreviewOnly(true);
    EXPECT_TRUE(makeStore()->previewOnly());
    makeStore()->setPreviewOnly(false);
    EXPECT_FALSE(makeStore()->previewOnly());
}

TEST_F(StoreTest, PreviewOnlyIsWrittenEvenWhenUnchanged) {
    const auto store = makeStore();
    store->setPreviewOnly(true);
    Preferences().setBoolean("vesk.preview", false);
    const QSignalSpy changes(store.get(), &Store::previewOnlyChanged);
    store->setPreviewOnly(true);
    EXPECT_EQ(Preferences().boolean("vesk.preview"), true);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(StoreTest, PersonalBytesAreTakenOffOneAfterAnother) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    // The sum of the two buckets would not fit, and nobody needs it.
    const auto store =
        scannedStore({cardOf("safe", Bucket::safe, most, false), cardOf("smart", Bucket::smart, 1, false)}, {most, 0});
    EXPECT_EQ(store->personalBytes(), 0);
}

}  // namespace
}  // namespace vesk

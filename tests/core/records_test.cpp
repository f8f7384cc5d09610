#include <gtest/gtest.h>

#include <limits>
#include <nlohmann/json.hpp>

#include "core/bucket.h"
#include "core/card.h"
#include "core/checked_sum.h"
#include "core/entry.h"

namespace vesk {
namespace {

Entry entryOfSize(std::int64_t size) {
    Entry entry;
    entry.size = size;
    return entry;
}

Card cardOf(double confidence, double dormancyDays, double risk, std::vector<Entry> entries) {
    Card card;
    card.confidence = confidence;
    card.dormancyDays = dormancyDays;
    card.risk = risk;
    card.entries = std::move(entries);
    return card;
}

TEST(Bucket, HasARawValueForEachCase) {
    EXPECT_EQ(rawValue(Bucket::safe), "safe");
    EXPECT_EQ(rawValue(Bucket::smart), "smart");
    EXPECT_EQ(rawValue(Bucket::personal), "personal");
    for (const Bucket bucket : {Bucket::safe, Bucket::smart, Bucket::personal}) {
        EXPECT_EQ(bucketFromRawValue(rawValue(bucket)), bucket);
        EXPECT_EQ(std::hash<Bucket>()(bucket), std::hash<std::string_view>()(rawValue(bucket)));
    }
    EXPECT_EQ(bucketFromRawValue("Safe"), std::nullopt);
    EXPECT_EQ(bucketFromRawValue(""), std::nullopt);
}

TEST(Bucket, IsABareStringInJson) {
    EXPECT_EQ(nlohmann::json(Bucket::smart).dump(), "\"smart\"");
    EXPECT_EQ(nlohmann::json::parse("\"safe\"").get<Bucket>(), Bucket::safe);
    EXPECT_THROW(nlohmann::json::parse("\"Safe\"").get<Bucket>(), std::invalid_argument);
    EXPECT_THROW(nlohmann::json::parse("{}").get<Bucket>(), nlohmann::json::exception);
}

TEST(Entry, IsEqualOnlyToItself) {
    const Date date = dateFromUnix(1'700'000'000, 5);
    const Entry first{Uuid::random(), "/a", "a", 1, date};
    Entry second = first;
    EXPECT_EQ(first, second);
    EXPECT_EQ(std::hash<Entry>()(first), std::hash<Entry>()(second));

    second.id = Uuid::random();
    EXPECT_NE(first, second);
    EXPECT_NE(std::hash<Entry>()(first), std::hash<Entry>()(second));
}

TEST(Entry, ComparesEveryField) {
    const Date date = dateFromUnix(1'700'000'000, 5);
    const Entry original{Uuid::random(), "/a", "a", 1, date};
    const auto differs = [&](auto change) {
        Entry other = original;
        change(other);
        EXPECT_NE(original, other);
        EXPECT_NE(std::hash<Entry>()(original), std::hash<Entry>()(other));
    };
    differs([](Entry& e) { e.url = "/b"; });
    differs([](Entry& e) { e.name = "b"; });
    differs([](Entry& e) { e.size = 2; });
    differs([](Entry& e) { e.lastUsed.reset(); });
    differs([](Entry& e) { *e.lastUsed += std::chrono::nanoseconds(1); });

    Entry undated = original;
    undated.lastUsed.reset();
    const Entry alike = undated;
    EXPECT_EQ(undated, alike);
}

TEST(Uuid, IsRandomAndHasATextualForm) {
    const Uuid uuid = Uuid::random();
    EXPECT_NE(uuid, Uuid::random());
    EXPECT_EQ(uuid.text().size(), 36U);
    EXPECT_EQ(uuid.text()[14], '4');
    EXPECT_EQ(Uuid::parse(uuid.text()), uuid);
    EXPECT_EQ(Uuid::parse("6f9619ff-8b86-d011-b42d-00cf4fc964ff")->text(), "6F9619FF-8B86-D011-B42D-00CF4FC964FF");
}

TEST(Uuid, RefusesEveryOtherText) {
    for (const char* text : {"", "6F9619FF-8B86-D011-B42D-00CF4FC964F", "6F9619FF-8B86-D011-B42D-00CF4FC964FFF",
                             "6F9619FF08B86-D011-B42D-00CF4FC964FF", "6F9619FG-8B86-D011-B42D-00CF4FC964FF",
                             "{F9619FF-8B86-D011-B42D-00CF4FC964F}", "6F9619FF-8B86-D011-B42D000CF4FC964FF"}) {
        EXPECT_EQ(Uuid::parse(text), std::nullopt) << text;
    }
}

TEST(Card, WithoutEntriesHasNoPriority) {
    EXPECT_EQ(cardOf(0.9, 100, 1, {}).priority(), 0.0);
}

TEST(Card, RaisesDormancyAndRiskToTheirFloors) {
    const double low = cardOf(0.5, 0.2, 0.0, {entryOfSize(1 << 20)}).priority();
    const double floors = cardOf(0.5, 1.0, 0.1, {entryOfSize(1 << 20)}).priority();
    EXPECT_EQ(low, floors);
    EXPECT_EQ(cardOf(0.5, -3, -1, {entryOfSize(1 << 20)}).priority(), floors);
}

TEST(Card, PriorityIsConfidenceTimesDaysTimesMiBByRisk) {
    EXPECT_DOUBLE_EQ(cardOf(0.6, 10, 3.0, {entryOfSize(1'048'576)}).priority(), 2.0);
    EXPECT_DOUBLE_EQ(cardOf(0.6, 10, 3.0, {entryOfSize(1'048'576), entryOfSize(524'288)}).priority(), 3.0);
}

TEST(Card, SizeIsTheSumOfItsEntries) {
    EXPECT_EQ(cardOf(1, 1, 1, {}).size(), 0);
    EXPECT_EQ(cardOf(1, 1, 1, {entryOfSize(5), entryOfSize(7)}).size(), 12);
}

TEST(CardDeathTest, EndsTheProgramRatherThanWrapASum) {
    const Card card = cardOf(1, 1, 1, {entryOfSize(std::numeric_limits<std::int64_t>::max()), entryOfSize(1)});
    EXPECT_DEATH((void)card.size(), "does not fit 64 bits");
    EXPECT_DEATH((void)checkedSum(std::numeric_limits<std::int64_t>::min(), -1), "does not fit 64 bits");
}

}  // namespace
}  // namespace vesk

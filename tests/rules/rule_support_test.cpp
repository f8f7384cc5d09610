// Functions shared by the rules.

#include "rules/rule_support.h"

#include <gtest/gtest.h>

namespace vesk::rules {
namespace {

using std::chrono::seconds;

const Date cutOff = dateFromUnix(1'700'000'000, 0);
const Date before = cutOff - seconds(1);

TEST(Ages, AnItemWithoutADateOfChangeMayBeNew) {
    EXPECT_FALSE(changedBefore(cutOff, std::nullopt));
    EXPECT_TRUE(changedBefore(cutOff, before));
    EXPECT_FALSE(changedBefore(cutOff, cutOff));
}

TEST(Ages, AnItemWithoutAnAccessDateIsJudgedByItsChangeAlone) {
    const struct {
        std::optional<Date> modified;
        std::optional<Date> accessed;
        bool untouched;
    } cases[] = {{before, std::nullopt, true},
                 {cutOff, std::nullopt, false},
                 {before, before, true},
                 {before, cutOff, false},
                 {cutOff, before, false},
                 {std::nullopt, before, false},
                 {std::nullopt, std::nullopt, false}};
    for (const auto& [modified, accessed, untouched] : cases) {
        ResourceValues values;
        values.contentModificationDate = modified;
        values.contentAccessDate = accessed;
        EXPECT_EQ(untouchedSince(cutOff, values), untouched)
            << modified.has_value() << accessed.has_value() << (modified == cutOff) << (accessed == cutOff);
    }
}

}  // namespace
}  // namespace vesk::rules

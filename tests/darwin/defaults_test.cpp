// The user defaults, and the other services that Core Foundation gives.

#include <gmock/gmock.h>

#include <string>

#include "darwin/model/core_foundation.h"
#include "platform/system/desktop.h"
#include "platform/system/preferences.h"
#include "platform/system/volume.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using namespace testing;
using darwin::Bytes;
using darwin::defaultOf;
using darwin::DefaultsValue;
using darwin::setDefault;
using ::testing::ElementsAre;

class DefaultsTest : public TemporaryHome {
protected:
    // Those of the system: no folder of their own.
    Preferences preferences{std::filesystem::path()};
};

TEST_F(DefaultsTest, NothingIsStoredAtFirst) {
    EXPECT_EQ(preferences.boolean("vesk.preview"), std::nullopt);
    EXPECT_EQ(preferences.data("vesk.history"), std::nullopt);
}

TEST_F(DefaultsTest, KeepYesAndNoAndBytes) {
    ASSERT_TRUE(preferences.setBoolean("vesk.preview", true));
    EXPECT_EQ(preferences.boolean("vesk.preview"), true);
    ASSERT_TRUE(preferences.setBoolean("vesk.preview", false));
    EXPECT_EQ(preferences.boolean("vesk.preview"), false);
    EXPECT_EQ(defaultOf("vesk.preview"), DefaultsValue(false));
    const std::string bytes("[\0]", 3);
    ASSERT_TRUE(preferences.setData("vesk.history", bytes));
    EXPECT_EQ(preferences.data("vesk.history"), bytes);
    EXPECT_EQ(defaultOf("vesk.history"), DefaultsValue(Bytes{bytes}));
}

// The switch may have been set by hand: "defaults write app.vesk.Vesk vesk.preview 1" stores a text.
TEST_F(DefaultsTest, ANumberOrATextIsYesOrNoAsTheSystemReadsIt) {
    for (const DefaultsValue& yes :
         {DefaultsValue(std::int64_t{1}), DefaultsValue(std::int64_t{-7}), DefaultsValue(0.5), DefaultsValue("YES"),
          DefaultsValue("true"), DefaultsValue("1"), DefaultsValue("y"), DefaultsValue(" +007")}) {
        setDefault("vesk.preview", yes);
        EXPECT_EQ(preferences.boolean("vesk.preview"), true) << yes.index();
    }
    for (const DefaultsValue& no :
         {DefaultsValue(std::int64_t{0}), DefaultsValue(0.0), DefaultsValue("NO"), DefaultsValue("false"),
          DefaultsValue("0"), DefaultsValue(""), DefaultsValue("on"), DefaultsValue(std::string(100, 'Y'))}) {
        setDefault("vesk.preview", no);
        EXPECT_EQ(preferences.boolean("vesk.preview"), false) << no.index();
    }
    setDefault("vesk.preview", Bytes{"YES"});
    EXPECT_EQ(preferences.boolean("vesk.preview"), std::nullopt);
}

TEST_F(DefaultsTest, AValueOfAnotherTypeIsNoHistory) {
    for (const DefaultsValue& value : {DefaultsValue("[]"), DefaultsValue(std::int64_t{1}), DefaultsValue(true)}) {
        setDefault("vesk.history", value);
        EXPECT_EQ(preferences.data("vesk.history"), std::nullopt);
    }
}

TEST_F(DefaultsTest, ARefusedSaveKeepsTheOldValue) {
    ASSERT_TRUE(preferences.setData("vesk.history", "old"));
    darwin::refuseToSaveDefaults(true);
    EXPECT_FALSE(preferences.setData("vesk.history", "new"));
    EXPECT_EQ(preferences.data("vesk.history"), "old");
    EXPECT_FALSE(preferences.setBoolean("vesk.preview", true));
    EXPECT_EQ(preferences.boolean("vesk.preview"), std::nullopt) << "nothing was there before";
}

TEST_F(DefaultsTest, AKeyThatIsNoTextHasNoValue) {
    EXPECT_FALSE(preferences.setData("\xFF", "x"));
    EXPECT_EQ(preferences.data("\xFF"), std::nullopt);
}

TEST_F(DefaultsTest, AVolumeWithoutTheFigureForImportantUseTellsNone) {
    darwin::setImportantSpace(std::nullopt);
    EXPECT_TRUE(readVolumeFigures(testHome()).totalCapacity);
    EXPECT_EQ(readVolumeFigures(testHome()).availableCapacity, std::nullopt);
    darwin::setImportantSpace(12345);
    EXPECT_EQ(readVolumeFigures(testHome()).availableCapacity, 12345);
}

TEST_F(DefaultsTest, FullDiskAccessIsAskedForAtItsPlace) {
    openFullDiskAccessSettings();
    EXPECT_THAT(darwin::openedLinks(),
                ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"));
}

}  // namespace
}  // namespace vesk

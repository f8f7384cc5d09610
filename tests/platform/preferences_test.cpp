// The user's stored preferences: readable by their owner only, replaced whole or not at all.

#include "platform/system/preferences.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/file.h>
#include <unistd.h>

#include "support/private_mounts.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;

class PreferencesTest : public TemporaryHome {
protected:
    const fs::path folder = testHome() / ".config/vesk";
    const fs::path file = folder / "vesk.history";
    Preferences preferences;
};

TEST_F(PreferencesTest, NothingIsStoredAtFirst) {
    EXPECT_EQ(preferences.data("vesk.history"), std::nullopt);
    EXPECT_EQ(preferences.boolean("vesk.preview"), std::nullopt);
    EXPECT_FALSE(isThere(folder)) << "asking must leave no trace";
}

TEST_F(PreferencesTest, KeepsBytesAsTheyAre) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    for (const std::string& bytes : {all, std::string(), std::string(1'000'000, 'x'), std::string("short")}) {
        ASSERT_TRUE(preferences.setData("vesk.history", bytes));
        EXPECT_EQ(preferences.data("vesk.history"), bytes);
        EXPECT_EQ(Preferences().data("vesk.history"), bytes) << "for the next start";
    }
    EXPECT_THAT(namesIn(folder), ElementsAre("vesk.history"));
}

TEST_F(PreferencesTest, KeepsYesAndNo) {
    for (const bool value : {true, false, true}) {
        ASSERT_TRUE(preferences.setBoolean("vesk.preview", value));
        EXPECT_EQ(preferences.boolean("vesk.preview"), value);
    }
}

TEST_F(PreferencesTest, AnythingElseIsNeitherYesNorNo) {
    for (const char* stored : {"", "true", "yes\n", "true\nfalse\n", "1"}) {
        ASSERT_TRUE(preferences.setData("vesk.preview", stored));
        EXPECT_EQ(preferences.boolean("vesk.preview"), std::nullopt) << stored;
    }
}

TEST_F(PreferencesTest, OnlyTheOwnerMayRead) {
    const auto mask = umask(0);
    ASSERT_TRUE(preferences.setData("vesk.history", "x"));
    umask(mask);
    EXPECT_EQ(modeOf(folder), 0700U);
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST_F(PreferencesTest, AFailedWriteKeepsTheOldValue) {
    ASSERT_TRUE(preferences.setData("vesk.history", "old"));
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_FALSE(preferences.setData("vesk.history", "new"));
    EXPECT_EQ(preferences.data("vesk.history"), "old");
    fs::permissions(folder, fs::perms::owner_all);
    EXPECT_THAT(namesIn(folder), ElementsAre("vesk.history"));
}

TEST_F(PreferencesTest, WhatCannotBeReadIsToldFromNothing) {
    EXPECT_FALSE(preferences.read("vesk.history").unreadable);
    ASSERT_TRUE(preferences.setData("vesk.history", "old"));
    EXPECT_FALSE(preferences.read("vesk.history").unreadable);
    fs::permissions(folder / "vesk.history", fs::perms::none);
    EXPECT_TRUE(preferences.read("vesk.history").unreadable);
    EXPECT_EQ(preferences.data("vesk.history"), std::nullopt);
}

TEST_F(PreferencesTest, AFullDiskKeepsTheOldValue) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    makeFolder(folder);
    ASSERT_TRUE(mountTemporaryFileSystem(folder, "size=64k"));
    ASSERT_TRUE(preferences.setData("vesk.history", "old"));
    EXPECT_FALSE(preferences.setData("vesk.history", std::string(100'000, 'n')));
    EXPECT_EQ(preferences.data("vesk.history"), "old");
    EXPECT_THAT(namesIn(folder), ElementsAre("vesk.history")) << "what was written so far must not fill the disk";
    ASSERT_TRUE(remountReadOnly(folder));
    EXPECT_FALSE(preferences.setData("vesk.history", "new"));
    EXPECT_EQ(preferences.data("vesk.history"), "old");
    unmount(folder);
}

TEST_F(PreferencesTest, AnOddThingInTheFilesPlaceIsNoValue) {
    makeFolder(file);
    EXPECT_EQ(preferences.data("vesk.history"), std::nullopt);
    EXPECT_FALSE(preferences.setData("vesk.history", "x"));
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(preferences.data("vesk.history"), std::nullopt) << "and nobody waits for a writer";
    fs::remove(file);
    writeFile(file, "x");
    fs::permissions(file, fs::perms::none);
    EXPECT_EQ(preferences.data("vesk.history"), std::nullopt);
}

TEST_F(PreferencesTest, AValueThatVeskCannotHaveWrittenIsNotTakenIntoMemory) {
    ASSERT_TRUE(preferences.setData("vesk.history", "x"));
    fs::resize_file(file, std::uintmax_t{2} << 30U);  // takes no space on the disk
    const StoredBytes read = preferences.read("vesk.history");
    EXPECT_FALSE(read.bytes);
    EXPECT_FALSE(read.unreadable) << "it is no value, and may be replaced";
}

TEST_F(PreferencesTest, WhatAKilledSaveLeftIsRemoved) {
    ASSERT_TRUE(preferences.setData("vesk.history", "x"));
    const std::vector<std::string> kept = {"in-use.lock",       "notes.AbCd12",        "vesk.AbCd12",
                                           "vesk.history",      "vesk.history.AbCd1-", "vesk.history.AbCd123",
                                           "vesk.history.later"};
    for (const std::string& name : kept) {
        writeFile(folder / name, "x");
    }
    writeFile(folder / "vesk.history.AbCd12", "[");
    writeFile(folder / "vesk.preview.000000", "");
    makeFolder(folder / "vesk.history.folder");
    makeLink(folder / "vesk.history.linked", folder / "notes.AbCd12");
    // A file that is being written is locked.
    writeFile(folder / "vesk.history.inWork", "[");
    const int writer = open((folder / "vesk.history.inWork").c_str(), O_WRONLY | O_CLOEXEC);
    ASSERT_EQ(flock(writer, LOCK_EX), 0);

    preferences.removeUnfinished();
    std::vector<std::string> expected = kept;
    expected.insert(expected.end(), {"vesk.history.folder", "vesk.history.linked", "vesk.history.inWork"});
    EXPECT_THAT(namesIn(folder), ::testing::UnorderedElementsAreArray(expected));
    close(writer);
    preferences.removeUnfinished();
    EXPECT_FALSE(isThere(folder / "vesk.history.inWork"));
    EXPECT_EQ(preferences.data("vesk.history"), "x");
}

TEST_F(PreferencesTest, AFileInTheFoldersPlaceRefusesEverything) {
    writeFile(folder, "x");
    EXPECT_EQ(preferences.data("vesk.history"), std::nullopt);
    EXPECT_FALSE(preferences.setData("vesk.history", "x"));
    EXPECT_EQ(contentOf(folder), "x");
}

TEST_F(PreferencesTest, AValueBehindALinkIsReplacedWithoutTouchingTheTarget) {
    writeFile(testHome() / "elsewhere", "old");
    makeLink(file, testHome() / "elsewhere");
    EXPECT_EQ(preferences.data("vesk.history"), "old");
    ASSERT_TRUE(preferences.setData("vesk.history", "new"));
    EXPECT_EQ(preferences.data("vesk.history"), "new");
    EXPECT_EQ(contentOf(testHome() / "elsewhere"), "old");
}

}  // namespace
}  // namespace vesk

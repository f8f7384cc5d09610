// What may go to the Trash at all, and how a swapped folder is recognised.

#include <gmock/gmock.h>

#include <cerrno>

#include "platform/files/identity.h"
#include "platform/trash_fixture.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

TEST_F(TrashTest, RefusesEverythingOutsideItsReach) {
    const fs::path outside = testRoot() / "Users/tester2/file";
    const fs::path system = testRoot() / "etc/file";
    writeFile(outside, "x");
    writeFile(system, "x");
    writeFile(testRoot() / "private/var/other", "x");
    makeFolder(testRoot() / "private/var/folders");
    makeFolder(home / "Junk/inner");
    const fs::path lies[] = {
        outside,
        system,
        testRoot() / "private/var/other",
        testRoot() / "private/var/folders",
        home,
        home / "",
        home / ".",
        testRoot() / "Users",
        home / "../tester2/file",
        home / "Junk/../../tester2/file",
        home / "Junk/inner/..",
        home / "Junk/inner/",
        home / "Junk/./inner",
        "/",
        "",
        "Junk/inner",
        "/etc/hostname",
    };
    const auto before = portrait(testRoot());
    for (const fs::path& lie : lies) {
        EXPECT_EQ(trashing(seen(lie)), EPERM) << lie;
    }
    EXPECT_EQ(portrait(testRoot()), before);
}

TEST_F(TrashTest, TakesTemporaryFilesOfTheSystem) {
    const fs::path clone = testRoot() / "private/var/folders/a/b/X/clone";
    writeFile(clone, "x");
    EXPECT_EQ(trashing(seen(clone)), 0);
    EXPECT_TRUE(isThere(files / "clone"));
}

TEST_F(TrashTest, NothingIsInReachWithoutAHome) {
    writeFile(item, "x");
    const SeenItem found = seen(item);
    const World before = world();
    for (const char* home_ : {"", "/", "relative"}) {
        World odd = before;
        odd.home = home_;
        setWorld(odd);
        EXPECT_EQ(trashing(found), EPERM) << home_;
    }
    World slash = before;
    slash.home = before.home / "";
    setWorld(slash);
    EXPECT_EQ(trashing(found), 0);
    setWorld(before);
}

TEST_F(TrashTest, RefusesAnItemWhoseFolderNobodySaw) {
    writeFile(item, "x");
    EXPECT_EQ(trashing({item, std::nullopt}), ESTALE);
    EXPECT_TRUE(isThere(item));
}

TEST_F(TrashTest, RefusesAnItemWhoseFolderWasSwapped) {
    writeFile(item, "seen");
    const SeenItem found = seen(item);
    const fs::path folder = item.parent_path();
    const fs::path aside = home / "aside";
    fs::rename(folder, aside);
    const auto refused = [&](const char* what) {
        const auto precious = portrait(item);
        EXPECT_EQ(trashing(found), ESTALE) << what;
        EXPECT_EQ(portrait(item), precious) << what;
        fs::remove_all(folder);
    };
    writeFile(item, "precious");
    refused("another folder");
    writeFile(home / "Documents/item", "precious");
    fs::create_symlink(home / "Documents", folder);
    refused("a link to another folder");
    writeFile(item, "precious");
    fs::remove_all(aside);
    refused("a folder made anew");
    EXPECT_EQ(contentOf(home / "Documents/item"), "precious");
}

TEST_F(TrashTest, TellsAFolderMadeAnewUnderTheSameNumber) {
    // File systems may reuse a freed inode number for the next folder.
    makeFolder(home / "Junk");
    const auto first = folderIdentity(home / "Junk");
    fs::remove(home / "Junk");
    makeFolder(home / "Junk");
    const auto second = folderIdentity(home / "Junk");
    ASSERT_TRUE(first && second);
    if (!first->made) {
        GTEST_SKIP() << "this file system does not say when a folder was made";
    }
    EXPECT_NE(*first, *second);
}

TEST_F(TrashTest, TakesAnItemFromAFolderThatMovedOnlyWithItsPath) {
    writeFile(item, "x");
    const SeenItem found = seen(item);
    fs::rename(item.parent_path(), home / "aside");
    EXPECT_EQ(trashing(found), ENOENT);
    fs::rename(home / "aside", item.parent_path());
    EXPECT_EQ(trashing(found), 0);
}

TEST_F(TrashTest, FollowsALinkedFolderAsTheScanDid) {
    writeFile(home / "Elsewhere/item", "x");
    makeLink(home / "Caches", home / "Elsewhere");
    ASSERT_EQ(trashing(seen(home / "Caches/item")), 0);
    EXPECT_TRUE(isThere(files / "item"));
    EXPECT_THAT(contentOf(info / "item.trashinfo"), ::testing::HasSubstr("/Caches/item\n"));
    EXPECT_EQ(restoring(files / "item", home / "Caches/item"), 0);
    EXPECT_TRUE(isThere(home / "Elsewhere/item"));
}

}  // namespace
}  // namespace vesk

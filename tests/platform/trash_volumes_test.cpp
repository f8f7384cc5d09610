// The Trash on other volumes, which are mounted for the test only.

#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>

#include "support/private_mounts.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class TrashVolumesTest : public TemporaryHome {
protected:
    void SetUp() override {
        if (!enterPrivateMounts()) {
            GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
        }
        makeFolder(disk);
        ASSERT_TRUE(mountTemporaryFileSystem(disk, "size=1m,nr_inodes=100"));
        writeFile(item, "content");
    }
    void TearDown() override { unmount(disk); }

    void expectRefused(std::initializer_list<int> errors) {
        const auto before = portrait(item);
        EXPECT_THAT(errors, ::testing::Contains(trashing(seen(item))));
        EXPECT_EQ(portrait(item), before);
        EXPECT_FALSE(isThere(homeTrash()));
        EXPECT_THAT(namesIn(own / "info"), IsEmpty());
    }
    void expectIn(const fs::path& trash) {
        const TrashOutcome outcome = moveToTrash(seen(item));
        ASSERT_FALSE(outcome.error) << outcome.error->code;
        EXPECT_EQ(outcome.place, trash / "files/item");
        EXPECT_EQ(contentOf(outcome.place), "content");
        EXPECT_THAT(contentOf(trash / "info/item.trashinfo"), HasSubstr("\nPath=folder/item\n"));
        EXPECT_EQ(modeOf(trash), 0700U);
        EXPECT_FALSE(isThere(homeTrash()));
        EXPECT_EQ(restoring(outcome.place, item), 0);
        EXPECT_EQ(contentOf(item), "content");
        EXPECT_THAT(namesIn(trash / "info"), IsEmpty());
    }

    const std::string user = std::to_string(getuid());
    const fs::path disk = testHome() / "disk";
    const fs::path item = disk / "folder/item";
    const fs::path own = disk / (".Trash-" + user);
};

TEST_F(TrashVolumesTest, AVolumeHasItsOwnTrash) {
    expectIn(own);
}

TEST_F(TrashVolumesTest, TheSharedTrashOfAVolumeComesFirst) {
    makeFolder(disk / ".Trash");
    ASSERT_EQ(chmod((disk / ".Trash").c_str(), 01777), 0);
    expectIn(disk / ".Trash" / user);
    EXPECT_FALSE(isThere(own));
}

TEST_F(TrashVolumesTest, ASharedTrashWithoutStickyBitIsNotUsed) {
    makeFolder(disk / ".Trash");
    ASSERT_EQ(chmod((disk / ".Trash").c_str(), 0777), 0);
    expectIn(own);
    EXPECT_THAT(namesIn(disk / ".Trash"), IsEmpty());
}

TEST_F(TrashVolumesTest, ASharedTrashThatIsALinkIsNotUsed) {
    makeFolder(disk / "elsewhere");
    ASSERT_EQ(chmod((disk / "elsewhere").c_str(), 01777), 0);
    makeLink(disk / ".Trash", disk / "elsewhere");
    expectIn(own);
    EXPECT_THAT(namesIn(disk / "elsewhere"), IsEmpty());
}

TEST_F(TrashVolumesTest, ASharedTrashThatCannotBeUsedIsPassedOver) {
    makeFolder(disk / ".Trash");
    ASSERT_EQ(chmod((disk / ".Trash").c_str(), 01555), 0);
    expectIn(own);
    ASSERT_EQ(chmod((disk / ".Trash").c_str(), 01777), 0);
    makeLink(disk / ".Trash" / user, disk);
    expectIn(own);
}

TEST_F(TrashVolumesTest, AnOwnTrashThatIsNoFolderIsRefused) {
    makeFolder(disk / "elsewhere");
    makeLink(own, disk / "elsewhere");
    expectRefused({ENOTDIR, ELOOP});
    fs::remove(own);
    makeLink(own, "nowhere");
    expectRefused({ENOTDIR, ELOOP});
    fs::remove(own);
    writeFile(own, "a file");
    expectRefused({ENOTDIR});
    EXPECT_THAT(namesIn(disk / "elsewhere"), IsEmpty());
}

TEST_F(TrashVolumesTest, AVolumeWhoseTopMayNotBeChangedRefuses) {
    ASSERT_EQ(chmod(disk.c_str(), 0555), 0);
    expectRefused({EACCES});
}

TEST_F(TrashVolumesTest, AFolderLinkedToAnotherDiskUsesThatDisksTrash) {
    makeLink(testHome() / "Caches", disk / "folder");
    const TrashOutcome outcome = moveToTrash(seen(testHome() / "Caches/item"));
    ASSERT_FALSE(outcome.error);
    EXPECT_EQ(outcome.place, own / "files/item");
    EXPECT_THAT(contentOf(own / "info/item.trashinfo"), HasSubstr("\nPath=folder/item\n"));
    EXPECT_EQ(restoring(outcome.place, testHome() / "Caches/item"), 0);
    EXPECT_EQ(contentOf(item), "content");
}

TEST_F(TrashVolumesTest, ALinkToAnotherDiskLiesWhereTheLinkDoes) {
    makeLink(testHome() / "link", disk / "folder");
    ASSERT_EQ(trashing(seen(testHome() / "link")), 0);
    EXPECT_TRUE(fs::is_symlink(homeTrash() / "files/link"));
    EXPECT_EQ(contentOf(item), "content");
}

TEST_F(TrashVolumesTest, AFullDiskKeepsItsItems) {
    makeFolder(own / "files");
    makeFolder(own / "info");
    // Fills the disk to its last block, which the record would need.
    std::ofstream filler(disk / "filler", std::ios::binary);
    filler << std::string(2 * 1024 * 1024, 'f') << std::flush;
    ASSERT_FALSE(filler.good());
    expectRefused({ENOSPC});
}

TEST_F(TrashVolumesTest, ADiskWithoutInodesKeepsItsItems) {
    for (int i = 0; i < 100; ++i) {
        const std::ofstream filler(disk / ("filler" + std::to_string(i)));
    }
    expectRefused({ENOSPC});
}

TEST_F(TrashVolumesTest, AReadOnlyDiskKeepsItsItems) {
    makeFolder(own / "files");
    makeFolder(own / "info");
    ASSERT_TRUE(remountReadOnly(disk));
    expectRefused({EROFS});
}

TEST_F(TrashVolumesTest, AFolderMountedASecondTimeIsAVolumeToo) {
    // It has the home's device number, but nothing can be renamed out of it.
    const fs::path again = testHome() / "again";
    makeFolder(testHome() / "shown");
    makeFolder(again);
    ASSERT_TRUE(mountFolderAgain(testHome() / "shown", again));
    writeFile(again / "folder/item", "bound");
    const TrashOutcome outcome = moveToTrash(seen(again / "folder/item"));
    ASSERT_FALSE(outcome.error) << outcome.error->code;
    EXPECT_EQ(outcome.place, again / (".Trash-" + user) / "files/item");
    EXPECT_FALSE(isThere(homeTrash()));
    EXPECT_EQ(restoring(outcome.place, again / "folder/item"), 0);
    unmount(again);
}

TEST_F(TrashVolumesTest, AMountedFolderItselfStays) {
    EXPECT_EQ(trashing(seen(disk)), EBUSY);
    EXPECT_EQ(contentOf(item), "content");
    EXPECT_THAT(namesIn(homeTrash() / "info"), IsEmpty());
}

TEST_F(TrashVolumesTest, AHomeTrashThatLeadsToAnotherDiskRefusesWhatLiesInTheHome) {
    // The home is a disk of its own here, so that a Trash could be made at its top.
    const fs::path home = disk / "home";
    makeFolder(home);
    ASSERT_TRUE(mountTemporaryFileSystem(home));
    const World before = world();
    setWorld(World::below(testRoot(), home));
    writeFile(home / "junk", "x");
    makeFolder(disk / "kept");
    makeLink(homeTrash(), disk / "kept");
    EXPECT_EQ(trashing(seen(home / "junk")), EXDEV);
    EXPECT_EQ(contentOf(home / "junk"), "x");
    EXPECT_FALSE(isThere(home / (".Trash-" + user)));
    EXPECT_THAT(namesIn(disk / "kept/info"), IsEmpty());
    setWorld(before);
    unmount(home);
}

TEST_F(TrashVolumesTest, AHomeWhoseProgramDataLiesOnAnotherDiskIsAVolumeOfItsOwn) {
    const fs::path home = disk / "home";
    makeFolder(home);
    ASSERT_TRUE(mountTemporaryFileSystem(home));
    const World before = world();
    setWorld(World::below(testRoot(), home));
    makeFolder(disk / "data");
    makeLink(world().dataHome, disk / "data");
    writeFile(home / "junk", "x");
    const TrashOutcome outcome = moveToTrash(seen(home / "junk"));
    EXPECT_FALSE(outcome.error);
    EXPECT_EQ(outcome.place, home / (".Trash-" + user) / "files/junk");
    EXPECT_THAT(namesIn(disk / "data"), IsEmpty());
    setWorld(before);
    unmount(home);
}

TEST_F(TrashVolumesTest, AMadeUpWorldReachesNoTrashOutsideItself) {
    // The items are on the same disk as the made-up world, but the home Trash is not.
    makeFolder(disk / "data");
    makeLink(world().dataHome, disk / "data");
    writeFile(testHome() / "junk", "x");
    EXPECT_EQ(trashing(seen(testHome() / "junk")), EXDEV);
    EXPECT_EQ(contentOf(testHome() / "junk"), "x");
}

TEST_F(TrashVolumesTest, ADiskWithANameThatIsNotUtf8KeepsItsItems) {
    // The history could not store the item's place in the Trash.
    const fs::path odd = testHome() / "odd\xFF";
    makeFolder(odd);
    ASSERT_TRUE(mountTemporaryFileSystem(odd));
    writeFile(odd / "item", "x");
    makeLink(testHome() / "Caches", odd);
    EXPECT_EQ(trashing(seen(testHome() / "Caches/item")), EILSEQ);
    EXPECT_EQ(contentOf(odd / "item"), "x");
    unmount(odd);
}

TEST_F(TrashVolumesTest, AnItemWhosePlaceIsOnAnotherDiskNowStaysInTheTrash) {
    writeFile(testHome() / "folder/item", "x");
    ASSERT_EQ(trashing(seen(testHome() / "folder/item")), 0);
    ASSERT_TRUE(mountTemporaryFileSystem(testHome() / "folder"));
    EXPECT_EQ(restoring(homeTrash() / "files/item", testHome() / "folder/item"), EXDEV);
    EXPECT_EQ(contentOf(homeTrash() / "files/item"), "x");
    EXPECT_TRUE(isThere(homeTrash() / "info/item.trashinfo"));
    unmount(testHome() / "folder");
}

TEST_F(TrashVolumesTest, AnInterruptedUndoOnAVolumeLeavesNoRecordForGood) {
    ASSERT_EQ(trashing(seen(item)), 0);
    fs::rename(own / "files/item", item);
    EXPECT_EQ(restoring(own / "files/item", disk / "folder/other"), ENOENT);
    EXPECT_TRUE(isThere(own / "info/item.trashinfo"));
    makeLink(testHome() / "Caches", disk / "folder");
    EXPECT_EQ(restoring(own / "files/item", testHome() / "Caches/item"), ENOENT);
    EXPECT_FALSE(isThere(own / "info/item.trashinfo"));
}

}  // namespace
}  // namespace vesk

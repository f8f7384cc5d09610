// Any program may change the Trash and the items' original places: what has an item's name there may be another item by
// now.

#include <fcntl.h>
#include <gmock/gmock.h>

#include <cerrno>

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/trash/trash_info.h"
#include "platform/trash/trash_record.h"
#include "platform/trash_fixture.h"
#include "support/private_mounts.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The Trash contains something with the item's name but without a record, and the item vanishes just before its move.
TEST_F(TrashTest, AVanishedItemIsNotTakenForAnOrphanOfItsName) {
    makeFolder(item.parent_path());
    writeFile(files / "item", "an orphan");
    EXPECT_EQ(trashing(seen(item)), ENOENT);
    EXPECT_EQ(contentOf(files / "item"), "an orphan");
    EXPECT_THAT(namesIn(info), IsEmpty());
}

// The item's folder has become a link into the Trash, so that both paths lead to the only name of the same file.
TEST_F(TrashTest, TheOnlyNameOfAFileIsNotTakenForOneOfTwo) {
    for (const bool hasAnother : {false, true}) {
        writeFile(item, "the only copy");
        ASSERT_EQ(trashing(seen(item)), 0);
        if (hasAnother) {
            fs::create_hard_link(files / "item", home / "Another");
        }
        fs::remove_all(item.parent_path());
        makeLink(item.parent_path(), files);
        EXPECT_EQ(restoring(files / "item", item), EEXIST);
        EXPECT_EQ(contentOf(files / "item"), "the only copy");
        EXPECT_THAT(namesIn(info), ElementsAre("item.trashinfo"));
        fs::remove(item.parent_path());
        EXPECT_EQ(restoring(files / "item", item), 0);
    }
}

TEST_F(TrashTest, TheOnlyNameOfAFileIsNotTakenForOneOfTwoThroughAMount) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    writeFile(item, "the only copy");
    ASSERT_EQ(trashing(seen(item)), 0);
    ASSERT_TRUE(mountFolderAgain(files, item.parent_path()));
    EXPECT_EQ(restoring(files / "item", item), EEXIST);
    EXPECT_EQ(contentOf(files / "item"), "the only copy");
    unmount(item.parent_path());
}

TEST_F(TrashTest, ARecordThatHasReplacedTheOneThatWasJudgedStays) {
    writeFile(info / "item.trashinfo", "judged");
    const Descriptor folder = openFolder(AT_FDCWD, info.c_str(), LastLink::doNotFollow);
    const Descriptor judged(open((info / "item.trashinfo").c_str(), O_RDONLY | O_CLOEXEC));
    writeFile(info / "fresh", "another program's");
    fs::rename(info / "fresh", info / "item.trashinfo");
    removeRecord(folder.get(), "item.trashinfo", judged);
    EXPECT_EQ(contentOf(info / "item.trashinfo"), "another program's");

    const Descriptor fresh(open((info / "item.trashinfo").c_str(), O_RDONLY | O_CLOEXEC));
    removeRecord(folder.get(), "item.trashinfo", fresh);
    EXPECT_THAT(namesIn(info), IsEmpty());
}

// Another program trashes the restored item: its record exists already, and the item follows a moment later.
TEST_F(TrashTest, ARecordThatAnotherProgramHasJustWrittenStays) {
    writeFile(item, "x");
    const Date cleaned = now();
    ASSERT_EQ(trashing(seen(item)), 0);
    fs::rename(files / "item", item);
    fs::remove(info / "item.trashinfo");
    const std::string fresh = trashInfoText(item.string(), cleaned + std::chrono::seconds(2));
    writeFile(info / "item.trashinfo", fresh);
    EXPECT_EQ(restoring(files / "item", item), ENOENT);
    EXPECT_EQ(contentOf(info / "item.trashinfo"), fresh);
}

}  // namespace
}  // namespace vesk

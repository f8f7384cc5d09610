// What an interrupted program, or a failing disk, leaves to the next undo.

#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

class TrashInterruptedTest : public TemporaryHome {
protected:
    const fs::path item = testHome() / "Junk/item";
    const fs::path files = homeTrash() / "files";
    const fs::path info = homeTrash() / "info";

    TrashInterruptedTest() {
        writeFile(item, "x");
        EXPECT_EQ(trashing(seen(item)), 0);
    }
};

// Where no rename refuses to replace, a file has two names for a moment.
TEST_F(TrashInterruptedTest, AFileWithBothNamesLosesTheOneInTheTrash) {
    fs::create_hard_link(files / "item", item);
    EXPECT_EQ(restoring(files / "item", item), 0);
    EXPECT_EQ(contentOf(item), "x");
    EXPECT_TRUE(namesIn(files).empty());
    EXPECT_TRUE(namesIn(info).empty());
}

TEST_F(TrashInterruptedTest, AnEqualFileInThePlaceIsAnotherOne) {
    writeFile(item, "x");
    EXPECT_EQ(restoring(files / "item", item), EEXIST);
    EXPECT_TRUE(isThere(files / "item"));
    EXPECT_TRUE(isThere(info / "item.trashinfo"));
}

TEST_F(TrashInterruptedTest, ARecordStaysUntilItsItemIsBack) {
    fs::rename(files / "item", testHome() / "aside");
    EXPECT_EQ(restoring(files / "item", item), ENOENT);
    EXPECT_TRUE(isThere(info / "item.trashinfo"));
    fs::rename(testHome() / "aside", item);
    EXPECT_EQ(restoring(files / "item", item), ENOENT);
    EXPECT_FALSE(isThere(info / "item.trashinfo"));
}

TEST_F(TrashInterruptedTest, AnItemThatCannotBeLookedAtKeepsItsRecord) {
    fs::permissions(files, fs::perms::none);
    EXPECT_EQ(restoring(files / "item", item), EACCES);
    fs::permissions(files, fs::perms::owner_all);
    EXPECT_TRUE(isThere(info / "item.trashinfo"));
    EXPECT_EQ(restoring(files / "item", item), 0);
}

}  // namespace
}  // namespace vesk

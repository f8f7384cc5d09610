// The way back from the Trash.

#include <gmock/gmock.h>

#include <cerrno>

#include "platform/trash_fixture.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::IsEmpty;

TEST_F(TrashTest, BringsATreeBackAsItWas) {
    writeFile(item / "inner/file", "content");
    writeFile(item / "secret/file", "hidden");
    makeLink(item / "link", "inner/file");
    makeLink(item / "dangling", "/nowhere");
    fs::permissions(item / "inner/file", fs::perms::owner_read);
    fs::permissions(item, static_cast<fs::perms>(0750));
    setDates(item / "inner/file", daysAgo(400), daysAgo(300));
    setDates(item / "link", daysAgo(200));
    setDates(item, daysAgo(100), daysAgo(50));
    const auto before = portrait(item);
    const unsigned parentMode = modeOf(item.parent_path());
    ASSERT_EQ(trashing(seen(item)), 0);
    ASSERT_EQ(restoring(files / "item", item), 0);
    EXPECT_EQ(portrait(item), before);
    EXPECT_EQ(modeOf(item.parent_path()), parentMode);
    EXPECT_THAT(namesIn(info), IsEmpty());
    EXPECT_THAT(namesIn(files), IsEmpty());
}

TEST_F(TrashTest, MakesMissingFoldersOnTheWayBack) {
    writeFile(home / "a/b/c/item", "x");
    ASSERT_EQ(trashing(seen(home / "a/b/c/item")), 0);
    fs::remove_all(home / "a");
    const auto mask = umask(0022);
    EXPECT_EQ(restoring(files / "item", home / "a/b/c/item"), 0);
    umask(mask);
    EXPECT_EQ(contentOf(home / "a/b/c/item"), "x");
    EXPECT_EQ(modeOf(home / "a/b"), 0755U);
}

TEST_F(TrashTest, NeverPutsAnItemOverAnother) {
    writeFile(item, "old");
    ASSERT_EQ(trashing(seen(item)), 0);
    const auto trashed = portrait(files / "item");
    const auto refused = [&](const char* what) {
        const auto newer = portrait(item);
        EXPECT_EQ(restoring(files / "item", item), EEXIST) << what;
        EXPECT_EQ(portrait(item), newer) << what;
        EXPECT_EQ(portrait(files / "item"), trashed) << what;
        EXPECT_TRUE(isThere(info / "item.trashinfo")) << what;
        fs::remove_all(item);
    };
    writeFile(item, "new");
    refused("a file");
    makeFolder(item);
    refused("an empty folder");
    fs::create_symlink("nowhere", item);
    refused("a dangling link");
    EXPECT_EQ(restoring(files / "item", item), 0);
}

TEST_F(TrashTest, LeavesInTheTrashWhatCannotGoBack) {
    writeFile(item, "x");
    ASSERT_EQ(trashing(seen(item)), 0);
    fs::remove_all(item.parent_path());
    writeFile(item.parent_path(), "a file where the folder was");
    EXPECT_EQ(restoring(files / "item", item), ENOTDIR);
    fs::remove(item.parent_path());
    makeFolder(item.parent_path());
    fs::permissions(item.parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(restoring(files / "item", item), EACCES);
    EXPECT_EQ(contentOf(files / "item"), "x");
    EXPECT_TRUE(isThere(info / "item.trashinfo"));
}

TEST_F(TrashTest, ForgetsTheRecordThatAnInterruptedUndoLeft) {
    writeFile(item, "x");
    ASSERT_EQ(trashing(seen(item)), 0);
    fs::rename(files / "item", item);
    EXPECT_EQ(restoring(files / "item", home / "Junk/other"), ENOENT);
    EXPECT_TRUE(isThere(info / "item.trashinfo")) << "the record of another item";
    EXPECT_EQ(restoring(files / "item", item), ENOENT);
    EXPECT_FALSE(isThere(info / "item.trashinfo"));
    EXPECT_EQ(contentOf(item), "x");
}

TEST_F(TrashTest, PutsNothingToOrFromAnOddPath) {
    writeFile(item, "x");
    ASSERT_EQ(trashing(seen(item)), 0);
    const std::string cut = item.string() + std::string("\0more", 5);
    EXPECT_EQ(restoring(files / "item", cut), EINVAL);
    EXPECT_EQ(restoring((files / "item").string() + std::string("\0more", 5), item), EINVAL);
    EXPECT_EQ(restoring(files / "item", "relative"), EINVAL);
    EXPECT_EQ(restoring(files / "item", ""), EINVAL);
    EXPECT_EQ(restoring("", item), EINVAL);
    EXPECT_EQ(restoring(files / "item", "/"), ESTALE) << "its record says otherwise";
    EXPECT_TRUE(isThere(files / "item"));
}

}  // namespace
}  // namespace vesk

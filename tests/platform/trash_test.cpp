// The home Trash: what it takes, what it records, what it refuses.

#include "platform/trash/trash.h"

#include <gmock/gmock.h>

#include <cerrno>

#include "platform/trash_fixture.h"
#include "support/file_names.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

TEST_F(TrashTest, TakesAnItemAndRecordsWhereItWas) {
    writeFile(item / "inner/file", "content");
    const auto before = portrait(item);
    const TrashOutcome outcome = moveToTrash(seen(item));
    ASSERT_FALSE(outcome.error);
    EXPECT_EQ(outcome.place, files / "item");
    EXPECT_EQ(portrait(files / "item"), before);
    EXPECT_FALSE(isThere(item));
    EXPECT_THAT(contentOf(info / "item.trashinfo"),
                MatchesRegex("\\[Trash Info\\]\nPath=" + item.string() +
                             "\nDeletionDate=[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\n"));
}

TEST_F(TrashTest, IsMadeForItsOwnerAlone) {
    writeFile(item, "x");
    ASSERT_EQ(trashing(seen(item)), 0);
    for (const fs::path& folder : {world().dataHome, homeTrash(), files, info}) {
        EXPECT_EQ(modeOf(folder), 0700U) << folder;
    }
    EXPECT_EQ(modeOf(info / "item.trashinfo"), 0600U);
}

TEST_F(TrashTest, TakesALinkItselfAndLeavesItsTarget) {
    writeFile(home / "Target/file", "content");
    makeLink(home / "Junk/to folder", home / "Target");
    makeLink(home / "Junk/to file", home / "Target/file");
    makeLink(home / "Junk/dangling", "nowhere");
    const auto target = portrait(home / "Target");
    for (const char* name : {"to folder", "to file", "dangling"}) {
        const auto before = portrait(home / "Junk" / name);
        ASSERT_EQ(trashing(seen(home / "Junk" / name)), 0) << name;
        EXPECT_TRUE(fs::is_symlink(files / name)) << name;
        EXPECT_EQ(portrait(files / name), before) << name;
        EXPECT_EQ(restoring(files / name, home / "Junk" / name), 0) << name;
        EXPECT_EQ(portrait(home / "Junk" / name), before) << name;
    }
    EXPECT_EQ(portrait(home / "Target"), target);
}

TEST_F(TrashTest, NumbersASecondItemOfTheSameName) {
    for (const char* content : {"first", "second", "third"}) {
        writeFile(item, content);
        ASSERT_EQ(trashing(seen(item)), 0);
    }
    EXPECT_EQ(contentOf(files / "item"), "first");
    EXPECT_EQ(contentOf(files / "item.2"), "second");
    EXPECT_EQ(contentOf(files / "item.3"), "third");
    EXPECT_THAT(namesIn(info), ElementsAre("item.2.trashinfo", "item.3.trashinfo", "item.trashinfo"));
}

TEST_F(TrashTest, TakesHundredsOfItemsOfOneName) {
    for (int i = 0; i < 300; ++i) {
        writeFile(item, std::to_string(i));
        ASSERT_EQ(trashing(seen(item)), 0) << i;
    }
    EXPECT_THAT(namesIn(files), SizeIs(300));
    EXPECT_THAT(namesIn(info), SizeIs(300));
}

TEST_F(TrashTest, NeverReplacesWhatLiesInTheTrashWithoutARecord) {
    writeFile(item, "new");
    writeFile(files / "item", "old");
    makeFolder(files / "item.2");
    fs::create_symlink("nowhere", files / "item.3");
    fs::permissions(files, fs::perms::owner_all);
    ASSERT_EQ(trashing(seen(item)), 0);
    EXPECT_EQ(contentOf(files / "item"), "old");
    EXPECT_TRUE(fs::is_directory(files / "item.2"));
    EXPECT_TRUE(fs::is_symlink(files / "item.3"));
    EXPECT_EQ(contentOf(files / "item.4"), "new");
    EXPECT_THAT(namesIn(info), ElementsAre("item.4.trashinfo"));
}

TEST_F(TrashTest, NeverReplacesARecord) {
    writeFile(item, "new");
    writeFile(info / "item.trashinfo", "of something lost");
    ASSERT_EQ(trashing(seen(item)), 0);
    EXPECT_EQ(contentOf(info / "item.trashinfo"), "of something lost");
    EXPECT_EQ(contentOf(files / "item.2"), "new");
}

TEST_F(TrashTest, ShortensANameThatLeavesNoRoomForItsRecord) {
    std::string umlauts;
    for (int i = 0; i < 127; ++i) {
        umlauts += "\xC3\xA4";
    }
    for (const std::string& name :
         {std::string(255, 'n'), "n" + umlauts, std::string(250, 'm'), std::string(246, 'k')}) {
        const fs::path original = home / "Junk" / name;
        for (const char* content : {"first", "second"}) {
            writeFile(original, content);
            const TrashOutcome outcome = moveToTrash(seen(original));
            ASSERT_FALSE(outcome.error) << name.size();
            const std::string kept = outcome.place.filename().string();
            EXPECT_LE(kept.size(), 245U);
            EXPECT_TRUE(contentOf(outcome.place) == content);
            const auto record = info / (kept + ".trashinfo");
            EXPECT_TRUE(isThere(record)) << record;
            // Cut between characters, so that every program can show it.
            const std::string base = kept.ends_with(".2") ? kept.substr(0, kept.size() - 2) : kept;
            EXPECT_TRUE(name.starts_with(base));
            EXPECT_NE(static_cast<unsigned char>(name[base.size()]) & 0xC0U, 0x80U);
            ASSERT_EQ(restoring(outcome.place, original), 0);
            EXPECT_EQ(contentOf(original), content);
            EXPECT_FALSE(isThere(record));
            ASSERT_EQ(trashing(seen(original)), 0);
        }
    }
}

TEST_F(TrashTest, RecordsAnyNameOnOneLine) {
    const std::string name = "line\nbreak %41 \"quoted\" #\xC3\xA9 \\ tab\t";
    writeFile(home / "Junk" / name, "x");
    ASSERT_EQ(trashing(seen(home / "Junk" / name)), 0);
    EXPECT_THAT(contentOf(info / (name + ".trashinfo")),
                ::testing::HasSubstr("/Junk/line%0Abreak%20%2541%20%22quoted%22%20%23%C3%A9%20%5C%20tab%09\nDel"));
    ASSERT_EQ(restoring(files / name, home / "Junk" / name), 0);
    EXPECT_THAT(namesIn(info), IsEmpty());
}

TEST_F(TrashTest, RefusesAPathThatIsNotUtf8) {
    VESK_NEEDS_NAMES("bad\xFFname");
    item = home / "Junk/bad\xFFname";
    writeFile(item, "x");
    expectRefused(EILSEQ);
}

TEST_F(TrashTest, RefusesWhatVanished) {
    makeFolder(item.parent_path());
    EXPECT_EQ(trashing(seen(item)), ENOENT);
    EXPECT_THAT(namesIn(info), IsEmpty());
    fs::remove(item.parent_path());
    EXPECT_EQ(trashing(seen(item)), ENOENT);
}

TEST_F(TrashTest, RefusesAnItemInAFolderThatMayNotBeChanged) {
    writeFile(item, "x");
    fs::permissions(item.parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
    expectRefused(EACCES);
}

TEST_F(TrashTest, RefusesWhenTheTrashIsNoFolderOfOurs) {
    writeFile(item, "x");
    makeFolder(world().dataHome);
    const auto before = portrait(item);
    const auto tryWith = [&](const char* what, int error) {
        EXPECT_EQ(trashing(seen(item)), error) << what;
        EXPECT_EQ(portrait(item), before) << what;
        fs::remove_all(homeTrash());
    };
    fs::create_symlink("nowhere", homeTrash());
    tryWith("a link to nothing", ENOENT);
    writeFile(homeTrash(), "a file");
    tryWith("a file", ENOTDIR);
    fs::create_symlink("/usr", homeTrash());  // another user's folder, which is only read
    tryWith("not ours", EPERM);
    makeFolder(homeTrash());
    fs::permissions(homeTrash(), fs::perms::owner_read | fs::perms::owner_exec);
    tryWith("not writable", EACCES);
    makeFolder(home / "elsewhere");
    makeFolder(homeTrash());
    fs::create_symlink(home / "elsewhere", homeTrash() / "files");
    tryWith("files is a link", ENOTDIR);
    makeFolder(homeTrash());
    fs::create_symlink(home / "elsewhere", homeTrash() / "info");
    tryWith("info is a link", ENOTDIR);
    makeFolder(homeTrash() / "files");
    makeFolder(info);
    fs::permissions(info, fs::perms::owner_read | fs::perms::owner_exec);
    tryWith("info is not writable", EACCES);
    fs::permissions(home, fs::perms::owner_all);
    EXPECT_THAT(namesIn(home / "elsewhere"), IsEmpty());
}

TEST_F(TrashTest, RefusesWhenTheItemsCannotEnterThoughTheirRecordsCan) {
    writeFile(item, "x");
    makeFolder(files);
    makeFolder(info);
    fs::permissions(files, fs::perms::owner_read | fs::perms::owner_exec);
    expectRefused(EACCES);
}

TEST_F(TrashTest, UsesATrashThatTheUserKeepsBehindALink) {
    writeFile(item, "x");
    makeFolder(home / "My Trash");
    makeLink(homeTrash(), home / "My Trash");
    EXPECT_EQ(trashing(seen(item)), 0);
    EXPECT_TRUE(isThere(home / "My Trash/files/item"));
}

TEST_F(TrashTest, RefusesToMoveTheTrashIntoItself) {
    makeFolder(homeTrash());
    writeFile(home / ".local/share/precious", "x");
    for (const fs::path& holder : {homeTrash(), home / ".local"}) {
        EXPECT_EQ(trashing(seen(holder)), EINVAL) << holder;
        EXPECT_THAT(namesIn(info), IsEmpty());
    }
    EXPECT_EQ(contentOf(home / ".local/share/precious"), "x");
}

}  // namespace
}  // namespace vesk

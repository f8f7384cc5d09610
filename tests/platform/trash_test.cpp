// The home Trash: what it takes, what it records, what it refuses, and the way back.

#include "platform/trash.h"

#include <gmock/gmock.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::SizeIs;

class TrashTest : public TemporaryHome {
protected:
    fs::path home = testHome();
    fs::path item = home / "Junk/item";
    fs::path files = homeTrash() / "files";
    fs::path info = homeTrash() / "info";

    // Nothing happened: the item is there, and no record claims otherwise.
    void expectUntouched(const fs::path& path, const std::map<std::string, std::string>& before) {
        EXPECT_EQ(portrait(path), before) << path;
        EXPECT_THAT(namesIn(info), IsEmpty());
        EXPECT_THAT(namesIn(files), IsEmpty());
    }
    void expectRefused(int error) {
        const auto before = portrait(item);
        EXPECT_EQ(trashing(seen(item)), error);
        expectUntouched(item, before);
    }
};

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
        EXPECT_EQ(puttingBack(files / name, home / "Junk" / name), 0) << name;
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
            // Cut between characters, so that every reader can show it.
            const std::string base = kept.ends_with(".2") ? kept.substr(0, kept.size() - 2) : kept;
            EXPECT_TRUE(name.starts_with(base));
            EXPECT_NE(static_cast<unsigned char>(name[base.size()]) & 0xC0U, 0x80U);
            ASSERT_EQ(puttingBack(outcome.place, original), 0);
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
    ASSERT_EQ(puttingBack(files / name, home / "Junk" / name), 0);
    EXPECT_THAT(namesIn(info), IsEmpty());
}

TEST_F(TrashTest, RefusesAPathThatIsNotUtf8) {
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
    fs::create_symlink("/usr", homeTrash());  // another user's folder, which is only looked at
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
    // File systems give a freed inode number to the next folder made.
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
    EXPECT_EQ(puttingBack(files / "item", home / "Caches/item"), 0);
    EXPECT_TRUE(isThere(home / "Elsewhere/item"));
}

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
    ASSERT_EQ(puttingBack(files / "item", item), 0);
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
    EXPECT_EQ(puttingBack(files / "item", home / "a/b/c/item"), 0);
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
        EXPECT_EQ(puttingBack(files / "item", item), EEXIST) << what;
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
    EXPECT_EQ(puttingBack(files / "item", item), 0);
}

TEST_F(TrashTest, LeavesInTheTrashWhatCannotGoBack) {
    writeFile(item, "x");
    ASSERT_EQ(trashing(seen(item)), 0);
    fs::remove_all(item.parent_path());
    writeFile(item.parent_path(), "a file where the folder was");
    EXPECT_EQ(puttingBack(files / "item", item), ENOTDIR);
    fs::remove(item.parent_path());
    makeFolder(item.parent_path());
    fs::permissions(item.parent_path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(puttingBack(files / "item", item), EACCES);
    EXPECT_EQ(contentOf(files / "item"), "x");
    EXPECT_TRUE(isThere(info / "item.trashinfo"));
}

TEST_F(TrashTest, PutsBackWhatHasLostItsRecord) {
    writeFile(item, "x");
    ASSERT_EQ(trashing(seen(item)), 0);
    fs::remove(info / "item.trashinfo");
    EXPECT_EQ(puttingBack(files / "item", item), 0);
    EXPECT_EQ(contentOf(item), "x");
}

TEST_F(TrashTest, ForgetsTheRecordThatAnInterruptedUndoLeft) {
    writeFile(item, "x");
    ASSERT_EQ(trashing(seen(item)), 0);
    fs::rename(files / "item", item);
    EXPECT_EQ(puttingBack(files / "item", home / "Junk/other"), ENOENT);
    EXPECT_TRUE(isThere(info / "item.trashinfo")) << "the record of another item";
    EXPECT_EQ(puttingBack(files / "item", item), ENOENT);
    EXPECT_FALSE(isThere(info / "item.trashinfo"));
    EXPECT_EQ(contentOf(item), "x");
}

TEST_F(TrashTest, PutsNothingToOrFromAnOddPath) {
    writeFile(item, "x");
    ASSERT_EQ(trashing(seen(item)), 0);
    const std::string cut = item.string() + std::string("\0more", 5);
    EXPECT_EQ(puttingBack(files / "item", cut), EINVAL);
    EXPECT_EQ(puttingBack((files / "item").string() + std::string("\0more", 5), item), EINVAL);
    EXPECT_EQ(puttingBack(files / "item", "relative"), EINVAL);
    EXPECT_EQ(puttingBack(files / "item", ""), EINVAL);
    EXPECT_EQ(puttingBack("", item), EINVAL);
    EXPECT_EQ(puttingBack(files / "item", "/"), EEXIST);
    EXPECT_TRUE(isThere(files / "item"));
}

// From here on this process sees a file system that has no rename which refuses to replace.
void loseExclusiveRename() {
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter{static_cast<unsigned short>(std::size(program)), program};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0) {
        std::exit(77);
    }
}

// Runs the steps in a process that has lost it; the exit code is the number of the first step that failed.
[[noreturn]] void runWithoutExclusiveRename(const std::vector<std::function<bool()>>& steps) {
    loseExclusiveRename();
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (!steps[i]()) {
            std::_Exit(static_cast<int>(i) + 1);
        }
    }
    std::_Exit(0);
}

TEST_F(TrashTest, WorksWhereNoRenameRefusesToReplace) {
    GTEST_FLAG_SET(death_test_style, "fast");
    writeFile(item, "file");
    writeFile(home / "Junk/folder/inner", "inner");
    makeLink(home / "Junk/link", "nowhere");
    writeFile(files / "item", "older");
    makeFolder(files / "folder");
    EXPECT_EXIT(
        runWithoutExclusiveRename({
            [&] { return trashing(seen(item)) == 0; },
            [&] { return contentOf(files / "item") == "older" && contentOf(files / "item.2") == "file"; },
            [&] { return !isThere(item) && isThere(info / "item.2.trashinfo") && !isThere(info / "item.trashinfo"); },
            [&] { return trashing(seen(home / "Junk/folder")) == 0; },
            [&] { return fs::is_empty(files / "folder") && contentOf(files / "folder.2/inner") == "inner"; },
            [&] { return trashing(seen(home / "Junk/link")) == 0 && fs::is_symlink(files / "link"); },
            [&] { return puttingBack(files / "item.2", item) == 0 && contentOf(item) == "file"; },
            [&] { return puttingBack(files / "folder.2", home / "Junk/folder") == 0; },
            [&] { return puttingBack(files / "link", home / "Junk/link") == 0 && namesIn(info).empty(); },
            [&] { return trashing(seen(home / ".local")) == EINVAL && namesIn(info).empty(); },
        }),
        ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace vesk

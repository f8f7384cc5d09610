// What is noticed of programs that open files in items.

#include <fcntl.h>
#include <gmock/gmock.h>

#include <chrono>
#include <fstream>
#include <thread>
#include <utility>
#include <vector>

#include "platform/files/descriptor.h"
#include "platform/files/files.h"
#include "platform/system/open_watch.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using namespace testing;

class OpenWatchTest : public TemporaryHome {
protected:
    OpenWatchTest() {
        makeFile(item / "file");
        makeFile(item / "folder/file");
        makeFile(other / "file");
        begin({item, other});
    }

    void begin(std::vector<std::string> items) {
        watch.prepare(std::move(items));
        watch.begin();
    }

    static void openAndClose(const std::filesystem::path& file) {
        EXPECT_TRUE(Descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC)));
    }

    const std::filesystem::path item = testHome() / "item";
    const std::filesystem::path other = testHome() / "other";
    OpenWatch watch;
};

TEST_F(OpenWatchTest, NoticesAFileThatIsOpenedInAnItemAndTellsItOnce) {
    EXPECT_FALSE(watch.noticed(item));
    openAndClose(item / "file");
    EXPECT_FALSE(watch.noticed(other));
    EXPECT_TRUE(watch.noticed(item));
    EXPECT_FALSE(watch.noticed(item));
}

TEST_F(OpenWatchTest, NoticesAFileInAFolderOfTheItem) {
    openAndClose(item / "folder/file");
    EXPECT_TRUE(watch.noticed(item));
}

TEST_F(OpenWatchTest, NoticesAnItemThatIsAFile) {
    makeFile(testHome() / "single");
    begin({testHome() / "single"});
    openAndClose(testHome() / "single");
    EXPECT_TRUE(watch.noticed(testHome() / "single"));
}

TEST_F(OpenWatchTest, TellsItemsOfOneFolderApart) {
    for (const char* name : {"a", "b", "c", "not an item"}) {
        makeFile(testHome() / "files" / name);
    }
    begin({testHome() / "files/a", testHome() / "files/b", testHome() / "files/c"});
    openAndClose(testHome() / "files/b");
    openAndClose(testHome() / "files/not an item");
    EXPECT_FALSE(watch.noticed(testHome() / "files/a"));
    EXPECT_TRUE(watch.noticed(testHome() / "files/b"));
    EXPECT_FALSE(watch.noticed(testHome() / "files/b"));
    EXPECT_FALSE(watch.noticed(testHome() / "files/c"));
    EXPECT_FALSE(watch.noticed(testHome() / "files/not an item"));
}

TEST_F(OpenWatchTest, NoticesBothKindsOfItemsInOneFolder) {
    makeFile(testHome() / "files/single");
    makeFile(testHome() / "files/folder/inside");
    begin({testHome() / "files/single", testHome() / "files/folder"});
    openAndClose(testHome() / "files/folder/inside");
    EXPECT_FALSE(watch.noticed(testHome() / "files/single"));
    EXPECT_TRUE(watch.noticed(testHome() / "files/folder"));
    openAndClose(testHome() / "files/single");
    EXPECT_TRUE(watch.noticed(testHome() / "files/single"));
}

TEST_F(OpenWatchTest, NoticesAFileBehindALinkToItsFolder) {
    makeFile(testHome() / "far/single");
    makeLink(testHome() / "near", "far");
    makeFile(testHome() / "far/other");
    begin({testHome() / "far/other", testHome() / "near/single"});
    openAndClose(testHome() / "far/single");
    EXPECT_TRUE(watch.noticed(testHome() / "near/single"));
    openAndClose(testHome() / "near/other");
    EXPECT_TRUE(watch.noticed(testHome() / "far/other"));
}

TEST_F(OpenWatchTest, NoticesWhatIsOpenedAfterTheItemHasMoved) {
    std::filesystem::rename(item, testHome() / "elsewhere");
    openAndClose(testHome() / "elsewhere/file");
    EXPECT_TRUE(watch.noticed(item));
}

TEST_F(OpenWatchTest, FoldersThatAreListedAreNothing) {
    listFolder(item, ListingDetail::kinds);
    listFolder(item / "folder", ListingDetail::kinds);
    EXPECT_FALSE(watch.noticed(item));
}

TEST_F(OpenWatchTest, AnItemThatIsMissingOrALinkIsNothing) {
    makeLink(testHome() / "link", "other/file");
    begin({testHome() / "link", testHome() / "missing"});
    openAndClose(testHome() / "link");
    EXPECT_FALSE(watch.noticed(testHome() / "link"));
    EXPECT_FALSE(watch.noticed(testHome() / "missing"));
}

TEST_F(OpenWatchTest, TellsAllWhenThereWasTooMuchToTell) {
    std::ifstream limit("/proc/sys/fs/inotify/max_queued_events");
    int most = 0;
    ASSERT_TRUE(limit >> most);
    if (most > 100'000) {
        GTEST_SKIP() << "this system keeps more events than a test can make";
    }
    // Events that equal the one before are told once.
    for (int i = 0; i <= most / 2; ++i) {
        openAndClose(item / "file");
        openAndClose(item / "folder/file");
    }
    EXPECT_TRUE(watch.noticed(other));
}

TEST_F(OpenWatchTest, OthersAreNotNoticedAnyMore) {
    watch.begin();
    openAndClose(item / "file");
    EXPECT_FALSE(watch.noticed(item));
    begin({item});
    openAndClose(item / "file");
    EXPECT_TRUE(watch.noticed(item));
}

TEST_F(OpenWatchTest, WhatIsOpenedWhileTheyArePreparedIsNoticedOnceTheyBegin) {
    // Nothing tells when the other thread watches the item, so the test waits longer each time.
    bool isNoticed = false;
    for (auto pause = std::chrono::milliseconds(1); !isNoticed && pause < std::chrono::seconds(4); pause *= 2) {
        begin({item, other});
        watch.prepare({item});
        std::this_thread::sleep_for(pause);
        openAndClose(item / "file");
        EXPECT_TRUE(watch.noticed(item));  // by the watch that is current still
        watch.begin();
        isNoticed = watch.noticed(item);
        EXPECT_FALSE(watch.noticed(other));
    }
    EXPECT_TRUE(isNoticed);
}

}  // namespace
}  // namespace vesk

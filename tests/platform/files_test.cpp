#include "platform/files/files.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <cerrno>

#include "support/file_names.h"
#include "support/private_mounts.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using testing::daysAgo;
using testing::makeFile;
using testing::makeFolder;
using testing::makeLink;
using testing::setDates;
using testing::testHome;

class FilesTest : public testing::TemporaryHome {};

std::vector<std::string> names(const FolderListing& listing) {
    std::vector<std::string> result;
    for (const FolderItem& item : listing.items) {
        result.push_back(item.name);
    }
    return result;
}

TEST_F(FilesTest, ListsEveryChildInByteOrder) {
    VESK_NEEDS_NAMES("b", "B", "\xFF\xFE not text");
    for (const char* name : {"b", "a", "B", ".hidden", "\xFF\xFE not text", "a b", "10", "9", "\xC3\xA9"}) {
        makeFile(testHome() / name, 1);
    }
    const FolderListing listing = listFolder(testHome(), ListingDetail::kinds);
    EXPECT_FALSE(listing.error);
    EXPECT_THAT(names(listing),
                ::testing::ElementsAre(".hidden", "10", "9", "B", "a", "a b", "b", "\xC3\xA9", "\xFF\xFE not text"));
}

TEST_F(FilesTest, OnlyRealFoldersAreDirectories) {
    makeFolder(testHome() / "folder");
    makeFile(testHome() / "file", 1);
    makeLink(testHome() / "link to folder", "folder");
    makeLink(testHome() / "dangling", "nowhere");
    for (const ListingDetail detail : {ListingDetail::kinds, ListingDetail::dates}) {
        for (const FolderItem& item : listFolder(testHome(), detail).items) {
            EXPECT_EQ(item.isDirectory, item.name == "folder") << item.name;
        }
    }
}

TEST_F(FilesTest, GivesDatesWhenAskedTo) {
    makeFile(testHome() / "file", 1);
    makeLink(testHome() / "link", "file");
    const Date changed = daysAgo(3);
    setDates(testHome() / "file", changed);
    setDates(testHome() / "link", changed - std::chrono::hours(1));
    const FolderListing listing = listFolder(testHome(), ListingDetail::dates);
    ASSERT_EQ(listing.items.size(), 2U);
    EXPECT_EQ(listing.items[0].contentModificationDate, changed);
    EXPECT_EQ(listing.items[1].contentModificationDate, changed - std::chrono::hours(1));
    for (const FolderItem& item : listFolder(testHome(), ListingDetail::kinds).items) {
        EXPECT_EQ(item.contentModificationDate, std::nullopt);
    }
}

TEST_F(FilesTest, ListsThroughALinkToAFolder) {
    makeFile(testHome() / "folder/file", 1);
    makeLink(testHome() / "link", "folder");
    EXPECT_THAT(names(listFolder(testHome() / "link", ListingDetail::kinds)), ::testing::ElementsAre("file"));
}

TEST_F(FilesTest, FailedListingsSayWhy) {
    makeFile(testHome() / "file", 1);
    makeFile(testHome() / "denied/file", 1);
    fs::permissions(testHome() / "denied", fs::perms::none);
    const struct {
        const char* name;
        int number;
    } cases[] = {{"missing", ENOENT}, {"file", ENOTDIR}, {"denied", EACCES}};
    for (const auto& c : cases) {
        const FolderListing listing = listFolder(testHome() / c.name, ListingDetail::dates);
        EXPECT_TRUE(listing.items.empty());
        ASSERT_TRUE(listing.error) << c.name;
        EXPECT_EQ(listing.error->domain, posixErrorDomain);
        EXPECT_EQ(listing.error->code, c.number) << c.name;
    }
}

TEST_F(FilesTest, AFolderThatMayBeReadButNotSearchedListsNamesWithoutDates) {
    makeFile(testHome() / "folder/file", 1);
    fs::permissions(testHome() / "folder", fs::perms::owner_read);
    const FolderListing listing = listFolder(testHome() / "folder", ListingDetail::dates);
    EXPECT_FALSE(listing.error);
    ASSERT_EQ(listing.items.size(), 1U);
    EXPECT_EQ(listing.items[0].contentModificationDate, std::nullopt);
}

TEST_F(FilesTest, ListingLeavesNoTrace) {
    makeFile(testHome() / "folder/file", 1);
    setDates(testHome() / "folder", daysAgo(2), daysAgo(10));
    const auto before = resourceValues(testHome() / "folder");
    listFolder(testHome() / "folder", ListingDetail::dates);
    EXPECT_EQ(resourceValues(testHome() / "folder")->contentAccessDate, before->contentAccessDate);
}

TEST_F(FilesTest, ExistenceFollowsLinks) {
    makeFile(testHome() / "file", 1);
    makeLink(testHome() / "link", "file");
    makeLink(testHome() / "dangling", "nowhere");
    makeLink(testHome() / "loop", "loop");
    makeFile(testHome() / "denied/file", 1);
    fs::permissions(testHome() / "denied", fs::perms::none);
    EXPECT_TRUE(itemExists(testHome() / "file"));
    EXPECT_TRUE(itemExists(testHome() / "link"));
    EXPECT_FALSE(itemExists(testHome() / "dangling"));
    EXPECT_FALSE(itemExists(testHome() / "loop"));
    EXPECT_FALSE(itemExists(testHome() / "missing"));
    EXPECT_FALSE(itemExists(testHome() / "file/below"));
    EXPECT_TRUE(itemExists(testHome() / "denied"));
    EXPECT_FALSE(itemExists(testHome() / "denied/file"));
}

TEST_F(FilesTest, FollowsALinkToItsEnd) {
    makeFile(testHome() / "folder/file", 1);
    makeLink(testHome() / "link", "folder");
    makeLink(testHome() / "chain", "link/file");
    makeLink(testHome() / "dangling", "nowhere");
    makeLink(testHome() / "loop", "loop");
    makeFolder(testHome() / "denied/inner");
    makeLink(testHome() / "to denied", "denied/inner");
    fs::permissions(testHome() / "denied", fs::perms::none);
    EXPECT_EQ(followLink(testHome() / "link"), fs::canonical(testHome() / "folder"));
    EXPECT_EQ(followLink(testHome() / "chain"), fs::canonical(testHome() / "folder/file"));
    for (const char* nowhere : {"dangling", "loop", "to denied", "missing"}) {
        EXPECT_EQ(followLink(testHome() / nowhere), std::nullopt) << nowhere;
    }
}

TEST_F(FilesTest, AFollowedLinkKeepsItsAccessDate) {
    if (!testing::privateMountsAreAllowed()) {
        GTEST_SKIP() << "no mount namespaces here";
    }
    makeFile(testHome() / "folder/file", 1);
    makeLink(testHome() / "inner", "folder");
    makeLink(testHome() / "link", "inner");
    makeLink(testHome() / "dangling", "nowhere");
    const std::vector<const char*> links = {"inner", "link", "dangling"};
    for (const char* link : links) {
        setDates(testHome() / link, daysAgo(70), daysAgo(80));
    }
    const std::vector<Date> before = {daysAgo(81), daysAgo(79)};
    EXPECT_TRUE(itemExists(testHome() / "link"));
    EXPECT_FALSE(itemExists(testHome() / "dangling"));
    EXPECT_TRUE(followLink(testHome() / "link"));
    for (const char* link : links) {
        const std::optional<Date> accessed = resourceValues(testHome() / link)->contentAccessDate;
        EXPECT_TRUE(accessed > before[0] && accessed < before[1]) << link;
    }
}

TEST_F(FilesTest, FollowsALinkAlsoWhereNoProcessCanBeStarted) {
    makeFolder(testHome() / "folder");
    makeLink(testHome() / "link", "folder");
    rlimit allowed{};
    ASSERT_EQ(getrlimit(RLIMIT_NPROC, &allowed), 0);
    const rlimit none{0, allowed.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NPROC, &none), 0);
    const auto target = followLink(testHome() / "link");
    const auto nowhere = followLink(testHome() / "missing");
    ASSERT_EQ(setrlimit(RLIMIT_NPROC, &allowed), 0);
    EXPECT_EQ(target, fs::canonical(testHome() / "folder"));
    EXPECT_EQ(nowhere, std::nullopt);
}

TEST_F(FilesTest, KnowsAMountPoint) {
    for (const char* folder : {"folder/inner", "mounted", "shown again"}) {
        makeFolder(testHome() / folder);
    }
    makeLink(testHome() / "link", "mounted");
    if (!testing::enterPrivateMounts()) {
        GTEST_SKIP() << "no mount namespaces here";
    }
    ASSERT_TRUE(testing::mountTemporaryFileSystem(testHome() / "mounted"));
    ASSERT_TRUE(testing::mountFolderAgain(testHome() / "folder", testHome() / "shown again"));
    makeFolder(testHome() / "mounted/below");
    for (const char* mount : {"mounted", "shown again"}) {
        EXPECT_TRUE(isMountPoint(testHome() / mount)) << mount;
    }
    for (const char* folder : {"folder", "folder/inner", "mounted/below", "shown again/inner", "link", "missing"}) {
        EXPECT_FALSE(isMountPoint(testHome() / folder)) << folder;
    }
    testing::unmount(testHome() / "mounted");
    testing::unmount(testHome() / "shown again");
}

TEST_F(FilesTest, ValuesAreTheItemsOwn) {
    makeFile(testHome() / "file", 10'000);
    setDates(testHome() / "file", daysAgo(2), daysAgo(1));
    makeLink(testHome() / "link", "file");
    const auto file = resourceValues(testHome() / "file");
    ASSERT_TRUE(file);
    EXPECT_TRUE(file->isRegularFile);
    EXPECT_FALSE(file->isDirectory);
    EXPECT_EQ(file->totalFileAllocatedSize, testing::allocated(testHome() / "file"));
    EXPECT_LT(file->contentModificationDate, file->contentAccessDate);

    const auto link = resourceValues(testHome() / "link");
    ASSERT_TRUE(link);
    EXPECT_FALSE(link->isRegularFile);
    EXPECT_FALSE(link->isDirectory);
    EXPECT_TRUE(link->isSymbolicLink);
    EXPECT_FALSE(file->isSymbolicLink);
    EXPECT_TRUE(resourceValues(testHome())->isDirectory);
    EXPECT_FALSE(resourceValues(testHome() / "missing"));
}

TEST_F(FilesTest, ResolvesLinksInThePath) {
    makeFile(testHome() / "folder/file", 1);
    makeLink(testHome() / "link", "folder");
    makeLink(testHome() / "dangling", "nowhere");
    EXPECT_EQ(resolvingLinks(testHome() / "link/file"), fs::canonical(testHome() / "folder/file"));
    EXPECT_FALSE(resolvingLinks(testHome() / "dangling"));
}

TEST(Dates, OutsideWhatCanBeHeldBecomeTheNearest) {
    EXPECT_EQ(dateFromUnix(0, 0).time_since_epoch().count(), 0);
    EXPECT_EQ(dateFromUnix(-1, 999'999'999).time_since_epoch().count(), -1);
    EXPECT_EQ(dateFromUnix(15'032'385'535, 0), Date::max());  // the last second that ext4 stores, in 2446
    EXPECT_EQ(dateFromUnix(-15'032'385'535, 0), Date::min());
    EXPECT_NEAR(secondsBetween(Date::min(), Date::max()), 1.8446744e10, 1e3);
    EXPECT_EQ(secondsBetween(dateFromUnix(10, 500'000'000), dateFromUnix(4, 0)), -6.5);
}

}  // namespace
}  // namespace vesk

// Files that lie in the cloud alone: nothing fetches them, and still they can be moved to the Trash.

#include <fcntl.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <thread>

#include "darwin/model/files.h"
#include "platform/files/files.h"
#include "platform/files/identity.h"
#include "platform/files/tree_walk.h"
#include "platform/threads/background.h"
#include "platform/trash/trash.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

using namespace testing;
using darwin::fetched;
using darwin::makeDataless;

class CloudTest : public TemporaryHome {
protected:
    CloudTest() {
        makeFile(folder / "inside/file");
        makeDataless(folder / "inside");
    }

    TrashOutcome trash(const std::filesystem::path& item) const {
        SeenItem seen;
        seen.path = item;
        seen.folder = folderIdentity(item.parent_path());
        return moveToTrash(seen);
    }

    const std::filesystem::path folder = testHome() / "folder";
};

TEST_F(CloudTest, AFolderInTheCloudIsNotFetchedByAListing) {
    const FolderListing listing = listFolder(folder / "inside", ListingDetail::kinds);
    ASSERT_TRUE(listing.error);
    EXPECT_EQ(listing.error->code, EDEADLK);
    EXPECT_EQ(listFolder(folder, ListingDetail::kinds).items.size(), 1U);
    EXPECT_EQ(fetched(), 0);
}

TEST_F(CloudTest, AFolderInTheCloudIsNotFetchedByAScan) {
    std::thread([this] {
        enterBackground();
        std::atomic<int> files = 0;
        std::atomic<int> errors = 0;
        walkTree(
            folder, [&] { return [&](const ResourceValues&) { ++files; }; }, [&](const PlatformError&) { ++errors; });
        EXPECT_EQ(files, 0);
        EXPECT_EQ(errors, 1);
    }).join();
    EXPECT_EQ(fetched(), 0);
}

// With the promise still on, the system refuses to move such a folder (EDEADLK).
TEST_F(CloudTest, AFolderInTheCloudGoesToTheTrashAfterAListingOnTheSameThread) {
    darwin::takeWorldForReal(true);
    listFolder(folder, ListingDetail::kinds);
    const TrashOutcome outcome = trash(folder / "inside");
    EXPECT_FALSE(outcome.error);
    EXPECT_EQ(outcome.place, darwin::trashOfTests() / "inside");
    EXPECT_FALSE(isThere(folder / "inside"));
    EXPECT_EQ(fetched(), 0);
}

TEST_F(CloudTest, OnlyAThreadOfAScanKeepsThePromiseNotToFetch) {
    std::thread([this] {
        listFolder(folder, ListingDetail::kinds);
        EXPECT_EQ(darwin::fetchingPolicy(), 0);
        enterBackground();
        listFolder(folder, ListingDetail::kinds);
        EXPECT_NE(darwin::fetchingPolicy(), 0);
    }).join();
}

TEST_F(CloudTest, TheSystemsTrashTellsAFoldersPlaceWithoutTheSlashAtItsEnd) {
    darwin::takeWorldForReal(true);
    makeFile(folder / "plain/file");
    const TrashOutcome outcome = trash(folder / "plain");
    EXPECT_FALSE(outcome.error);
    EXPECT_EQ(outcome.place, darwin::trashOfTests() / "plain");
    ASSERT_TRUE(outcome.identity);
    TrashedItem back;
    back.original = folder / "plain";
    back.place = outcome.place;
    back.identity = outcome.identity;
    EXPECT_FALSE(restoreItem(back));
    EXPECT_TRUE(isThere(folder / "plain/file"));
}

}  // namespace
}  // namespace vesk

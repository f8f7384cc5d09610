#include "platform/files/directory.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/files/descriptor.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using testing::makeFile;
using testing::makeFolder;
using testing::makeLink;
using testing::setDates;
using testing::testHome;

class DirectoryTest : public testing::TemporaryHome {
protected:
    std::filesystem::path folder = testHome() / "folder";
};

// If a system delivers figures with the names, they must equal those of a stat call for each item.
TEST_F(DirectoryTest, ListedValuesEqualStatValues) {
    makeFile(folder / "small", 1);
    makeFile(folder / "large", 1'000'000);
    makeFile(folder / "empty", 0);
    makeFile(folder / "sparse", 4096);
    ASSERT_EQ(::truncate((folder / "sparse").c_str(), 100'000'000), 0);
    makeFolder(folder / "sub/below");
    makeLink(folder / "link", "small");
    makeLink(folder / "dangling", "nowhere");
    ASSERT_EQ(::link((folder / "large").c_str(), (folder / "second name").c_str()), 0);
    ASSERT_EQ(::mkfifo((folder / "fifo").c_str(), 0600), 0);
    setDates(folder / "small", dateFromUnix(-5, 250'000'000), dateFromUnix(1'000'000'000, 0));

    const Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::doNotFollow);
    ASSERT_TRUE(opened);
    std::vector<std::string> names;
    EXPECT_EQ(readNames(opened.get(),
                        [&](ListedItem item) {
                            SCOPED_TRACE(item.name);
                            names.emplace_back(item.name);
                            ResourceValues listed;
                            ResourceValues looked;
                            ASSERT_EQ(statItem(opened.get(), item, listed), 0);
                            ASSERT_EQ(statItem(opened.get(), item.name, looked), 0);
                            EXPECT_EQ(listed.isRegularFile, looked.isRegularFile);
                            EXPECT_EQ(listed.isDirectory, looked.isDirectory);
                            EXPECT_EQ(listed.isSymbolicLink, looked.isSymbolicLink);
                            EXPECT_EQ(listed.contentAccessDate, looked.contentAccessDate);
                            EXPECT_EQ(listed.contentModificationDate, looked.contentModificationDate);
                            if (looked.isRegularFile) {
                                EXPECT_EQ(listed.totalFileAllocatedSize, looked.totalFileAllocatedSize);
                            }
                        }),
              0);
    EXPECT_THAT(names, ::testing::UnorderedElementsAre("small", "large", "empty", "sparse", "sub", "link", "dangling",
                                                       "second name", "fifo"));
}

TEST_F(DirectoryTest, FiguresThatCameWithTheNameSpareTheLook) {
    ResourceValues delivered;
    delivered.isRegularFile = true;
    delivered.totalFileAllocatedSize = 4096;
    ResourceValues values;
    // No folder at all: a stat call would fail.
    EXPECT_EQ(statItem(-1, ListedItem{"name", ItemKind::regularFile, &delivered}, values), 0);
    EXPECT_TRUE(values.isRegularFile);
    EXPECT_EQ(values.totalFileAllocatedSize, 4096);
    EXPECT_EQ(statItem(-1, ListedItem{"name", ItemKind::regularFile}, values), EBADF);
}

TEST_F(DirectoryTest, AFolderOfManyNamesIsReadWhole) {
    std::vector<std::string> made;
    for (int i = 0; i < 3000; ++i) {
        made.push_back(std::to_string(i) + std::string(static_cast<std::size_t>(i % 200), 'x'));
        makeFile(folder / made.back(), 0);
    }
    const Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::doNotFollow);
    ASSERT_TRUE(opened);
    std::vector<std::string> names;
    EXPECT_EQ(readNames(opened.get(), [&](ListedItem item) { names.emplace_back(item.name); }), 0);
    std::sort(made.begin(), made.end());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, made);
}

}  // namespace
}  // namespace vesk

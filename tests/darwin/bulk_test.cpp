// Names and figures of a folder's items in one go, as getattrlistbulk(2) hands them over.

#include <fcntl.h>
#include <gmock/gmock.h>

#include <cerrno>
#include <map>
#include <string>
#include <vector>

#include "darwin/model/files.h"
#include "platform/files/directory.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using namespace testing;
using darwin::BulkBehaviour;
using darwin::bulkRecords;
using darwin::setBulkBehaviour;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

class BulkTest : public TemporaryHome {
protected:
    BulkTest() {
        for (const char* name : {"one", "two", "three", "four"}) {
            makeFile(folder / name);
        }
        makeFolder(folder / "sub");
    }

    struct Reading {
        int failure = 0;
        std::vector<std::string> names;
        int withValues = 0;
    };

    Reading read() const {
        Reading reading;
        const Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::doNotFollow);
        reading.failure = readNames(opened.get(), [&](const ListedItem& item) {
            reading.names.emplace_back(item.name);
            reading.withValues += item.values != nullptr ? 1 : 0;
        });
        return reading;
    }

    BulkBehaviour behaviour;
    const std::filesystem::path folder = testHome() / "folder";
    const ::testing::Matcher<std::vector<std::string>> all = UnorderedElementsAre("one", "two", "three", "four", "sub");
};

TEST_F(BulkTest, FiguresComeWithTheNames) {
    const Reading reading = read();
    EXPECT_EQ(reading.failure, 0);
    EXPECT_THAT(reading.names, all);
    EXPECT_EQ(reading.withValues, 5);
    EXPECT_EQ(bulkRecords(), 5);
}

TEST_F(BulkTest, FewRecordsAtATimeAreReadToTheLast) {
    for (const int most : {1, 2, 3}) {
        behaviour.mostRecords = most;
        setBulkBehaviour(behaviour);
        const Reading reading = read();
        EXPECT_EQ(reading.failure, 0);
        EXPECT_THAT(reading.names, all) << most;
    }
}

TEST_F(BulkTest, AnItemWithoutFiguresIsStillNamed) {
    behaviour.broken = "two";
    setBulkBehaviour(behaviour);
    const Reading reading = read();
    EXPECT_EQ(reading.failure, 0);
    EXPECT_THAT(reading.names, all);
    EXPECT_EQ(reading.withValues, 4);
}

TEST_F(BulkTest, AnItemWithoutANameIsAFailureAndTheOthersAreNamed) {
    behaviour.broken = "two";
    behaviour.brokenHasName = false;
    setBulkBehaviour(behaviour);
    const Reading reading = read();
    EXPECT_EQ(reading.failure, EIO);
    EXPECT_THAT(reading.names, UnorderedElementsAre("one", "three", "four", "sub"));
}

TEST_F(BulkTest, AFileSystemWithoutTheCallIsReadNameByName) {
    for (const int failure : {ENOTSUP, EINVAL, EACCES}) {
        behaviour.failure = failure;
        setBulkBehaviour(behaviour);
        const Reading reading = read();
        EXPECT_EQ(reading.failure, 0);
        EXPECT_THAT(reading.names, all);
        EXPECT_EQ(reading.withValues, 0);
    }
}

TEST_F(BulkTest, AFolderThatMayNotBeReadIsRefused) {
    std::filesystem::permissions(folder, std::filesystem::perms::none);
    EXPECT_FALSE(openFolder(AT_FDCWD, folder.c_str(), LastLink::doNotFollow));
    EXPECT_EQ(errno, EACCES);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
}

// The last test here: after it, nothing more is read in bulk, for the rest of the process.
TEST_F(BulkTest, RecordsThatAreNotUnderstoodAreNotUsed) {
    behaviour.foreign = true;
    setBulkBehaviour(behaviour);
    const Reading reading = read();
    EXPECT_EQ(reading.failure, 0);
    EXPECT_THAT(reading.names, all);
    EXPECT_EQ(reading.withValues, 0);
}

}  // namespace
}  // namespace vesk

#include "core/probe.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>

#include "support/temporary_home.h"

namespace vesk {
namespace {

using testing::allocated;
using testing::daysAgo;
using testing::makeFile;
using testing::setDates;
using testing::testHome;

class ProbeTest : public testing::TemporaryHome {
protected:
    std::shared_ptr<Tracker> tracker = std::make_shared<Tracker>();
    Probe probe{tracker};
};

PlatformError error(std::string_view domain, std::int64_t code, std::optional<PlatformError> underlying = {}) {
    PlatformError made{std::string(domain), code, nullptr};
    if (underlying) {
        made.underlying = std::make_shared<const PlatformError>(*underlying);
    }
    return made;
}

TEST_F(ProbeTest, PermissionIsToldFromOtherErrors) {
    EXPECT_TRUE(Probe::isPermission(error(cocoaErrorDomain, 257)));
    EXPECT_TRUE(Probe::isPermission(error(cocoaErrorDomain, 513)));
    EXPECT_TRUE(Probe::isPermission(error(posixErrorDomain, 1)));
    EXPECT_TRUE(Probe::isPermission(error(posixErrorDomain, 13)));
    EXPECT_FALSE(Probe::isPermission(error(cocoaErrorDomain, 260)));
    EXPECT_FALSE(Probe::isPermission(error(cocoaErrorDomain, 1)));
    EXPECT_FALSE(Probe::isPermission(error(posixErrorDomain, 257)));
    EXPECT_FALSE(Probe::isPermission(error(posixErrorDomain, 2)));
    EXPECT_FALSE(Probe::isPermission(error("NSOSStatusErrorDomain", 13)));
    EXPECT_TRUE(Probe::isPermission(posixError(EACCES)));
    EXPECT_TRUE(Probe::isPermission(posixError(EPERM)));
    EXPECT_FALSE(Probe::isPermission(posixError(ENOENT)));
}

TEST_F(ProbeTest, PermissionIsFoundAtAnyDepth) {
    EXPECT_TRUE(Probe::isPermission(error(cocoaErrorDomain, 4, error(posixErrorDomain, 13))));
    PlatformError deep = error(posixErrorDomain, 1);
    for (int i = 0; i < 1000; ++i) {
        deep = error(cocoaErrorDomain, 4, deep);
    }
    EXPECT_TRUE(Probe::isPermission(deep));
    EXPECT_FALSE(Probe::isPermission(error(cocoaErrorDomain, 4, error(posixErrorDomain, 2))));
}

TEST_F(ProbeTest, AsksForFiveValuesInOrder) {
    EXPECT_THAT(Probe::keys, ::testing::ElementsAre("totalFileAllocatedSize", "fileAllocatedSize", "isRegularFile",
                                                    "contentAccessDate", "contentModificationDate"));
    EXPECT_EQ(Probe::keySet.size(), 5U);
}

TEST_F(ProbeTest, PrefersTheTotalSizeAndTheAccessDate) {
    ResourceValues values;
    EXPECT_EQ(Probe::allocatedSize(values), 0);
    EXPECT_EQ(Probe::useDate(values), std::nullopt);
    values.fileAllocatedSize = 1;
    values.contentModificationDate = dateFromUnix(100, 0);
    EXPECT_EQ(Probe::allocatedSize(values), 1);
    EXPECT_EQ(Probe::useDate(values), dateFromUnix(100, 0));
    values.totalFileAllocatedSize = 2;
    values.contentAccessDate = dateFromUnix(50, 0);
    EXPECT_EQ(Probe::allocatedSize(values), 2);
    EXPECT_EQ(Probe::useDate(values), dateFromUnix(50, 0));
}

TEST_F(ProbeTest, MeasuresOneFile) {
    const auto file = testHome() / "file";
    makeFile(file, 10'000);
    const Date opened = daysAgo(5);
    setDates(file, daysAgo(10), opened);
    EXPECT_EQ(probe.measure(file), (Probe::Measurement{allocated(file), opened}));
    EXPECT_EQ(tracker->counts(), (Tracker::Counts{allocated(file), 1}));
    EXPECT_EQ(tracker->updates(), 1);
    EXPECT_FALSE(probe.blocked);
}

TEST_F(ProbeTest, CountsNothingOfAFolderThatIsLeftOutForWhatIsInIt) {
    makeFile(testHome() / "cache/file", 5'000);
    makeFile(testHome() / "cache/inner/file", 5'000);
    ASSERT_TRUE(probe.entry(testHome() / "cache", "Cache", Probe::Contents::plain));
    EXPECT_EQ(tracker->counts().files, 2);
    std::filesystem::create_directory_symlink("nowhere", testHome() / "cache/inner/link");
    ASSERT_TRUE(probe.entry(testHome() / "cache", "Cache", Probe::Contents::plain));
    EXPECT_EQ(tracker->counts().files, 4);
    ASSERT_EQ(mkfifo((testHome() / "cache/inner/pipe").c_str(), 0600), 0);
    EXPECT_FALSE(probe.entry(testHome() / "cache", "Cache", Probe::Contents::plain));
    EXPECT_EQ(tracker->counts().files, 4);
    EXPECT_FALSE(probe.blocked);
    EXPECT_TRUE(probe.entry(testHome() / "cache", "Cache"));
}

}  // namespace
}  // namespace vesk

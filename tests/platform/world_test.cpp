#include "platform/world.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "support/temporary_home.h"

namespace vesk {
namespace {

using testing::makeFolder;
using testing::makeLink;
using testing::testHome;

class WorldTest : public testing::TemporaryHome {};

TEST_F(WorldTest, TheTestsOwnWorldIsNotReal) {
    EXPECT_FALSE(world().isReal());
}

TEST_F(WorldTest, AnotherHomeIsNotRealEvenBelowTheRealRoot) {
    const std::filesystem::path homeOfUser = testHome() / "user";
    makeFolder(homeOfUser);
    makeFolder(testHome() / "other");
    for (const std::filesystem::path& home : {testHome() / "other", testHome() / "missing", std::filesystem::path()}) {
        EXPECT_FALSE(World::below("/", home).isRealWith(homeOfUser)) << home;
    }
    EXPECT_FALSE(World::below("/", testHome() / "missing").isRealWith(testHome() / "missing"));
    EXPECT_FALSE(World::below("/", "").isRealWith(""));
}

TEST_F(WorldTest, TheUsersHomeIsRealByWhateverPathButOnlyBelowTheRealRoot) {
    const std::filesystem::path homeOfUser = testHome() / "user";
    makeFolder(homeOfUser);
    makeLink(testHome() / "link", "user");
    for (const std::filesystem::path& home : {homeOfUser, homeOfUser / ".", testHome() / "link"}) {
        EXPECT_TRUE(World::below("/", home).isRealWith(homeOfUser)) << home;
        EXPECT_FALSE(World::below(testHome(), home).isRealWith(homeOfUser)) << home;
    }
}

// What this user's home is when the environment says it is `value`; null for nothing at all.
World worldWithHome(const char* value) {
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread runs
    const char* const before = std::getenv("HOME");
    const std::string kept = before == nullptr ? "" : before;
    value == nullptr ? unsetenv("HOME") : setenv("HOME", value, 1);
    World result = World::ofCurrentUser();
    before == nullptr ? unsetenv("HOME") : setenv("HOME", kept.c_str(), 1);
    // NOLINTEND(concurrency-mt-unsafe)
    return result;
}

TEST_F(WorldTest, TheEnvironmentDecidesWhereTheHomeIs) {
    EXPECT_EQ(worldWithHome("/some where/\xC3\xBC").home, "/some where/\xC3\xBC");
}

TEST_F(WorldTest, WithoutAHomeInTheEnvironmentTheUserDatabaseDecides) {
    const passwd* const user = getpwuid(getuid());  // NOLINT(concurrency-mt-unsafe): no other thread runs
    ASSERT_NE(user, nullptr);
    for (const char* const value : {static_cast<const char*>(nullptr), "", "relative", "./x"}) {
        EXPECT_EQ(worldWithHome(value).home, user->pw_dir) << (value == nullptr ? "nothing" : value);
    }
}

TEST_F(WorldTest, AHomeThatIsTheWholeDiskIsAtFault) {
    makeLink(testHome() / "link", "/");
    makeLink(testHome() / "link to link", "link");
    for (const std::filesystem::path& home :
         {std::filesystem::path("/"), std::filesystem::path("//"), std::filesystem::path("/."),
          std::filesystem::path("/usr/.."), testHome() / "link", testHome() / "link to link/"}) {
        EXPECT_EQ(World::below("/", home).homeFault(), World::HomeFault::wholeDisk) << home;
    }
    EXPECT_EQ(worldWithHome("/").homeFault(), World::HomeFault::wholeDisk);
}

TEST_F(WorldTest, AHomeThatCannotBeToldIsAtFault) {
    for (const char* const home : {"", "relative", "."}) {
        EXPECT_EQ(World::below("/", home).homeFault(), World::HomeFault::unknown) << home;
    }
}

TEST_F(WorldTest, AHomeThatBelongsToAnotherUserIsAtFault) {
    makeLink(testHome() / "link", "/usr");  // root's, and tests never run as root
    EXPECT_EQ(World::below("/", "/usr").homeFault(), World::HomeFault::anothers);
    EXPECT_EQ(World::below("/", testHome() / "link").homeFault(), World::HomeFault::anothers);
}

TEST_F(WorldTest, AnyOtherHomeIsNot) {
    makeFolder(testHome() / "user");
    makeLink(testHome() / "link", "user");
    for (const std::filesystem::path& home : {testHome(), testHome() / "link", testHome() / "missing"}) {
        EXPECT_EQ(World::below("/", home).homeFault(), World::HomeFault::none) << home;
    }
}

}  // namespace
}  // namespace vesk

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

// Seen in the terminal of a sandboxed editor: what Vesk moved would have gone to a Trash of that program's own.
TEST_F(WorldTest, FoldersOfASandboxAreNotTakenForTheUsers) {
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread runs
    const auto folders = [](const std::string& value, const char* host) {
        const std::filesystem::path before = World::ofCurrentUser().dataHome;
        const char* const kept = std::getenv("XDG_DATA_HOME");
        const std::string keptValue = kept == nullptr ? "" : kept;
        setenv("XDG_DATA_HOME", value.c_str(), 1);
        setenv("HOST_XDG_DATA_HOME", host, 1);
        const std::filesystem::path found = worldWithHome(testHome().c_str()).dataHome;
        unsetenv("HOST_XDG_DATA_HOME");
        kept == nullptr ? unsetenv("XDG_DATA_HOME") : setenv("XDG_DATA_HOME", keptValue.c_str(), 1);
        EXPECT_EQ(World::ofCurrentUser().dataHome, before);
        return found;
    };
    // NOLINTEND(concurrency-mt-unsafe)
    const std::string home = testHome().string();
    EXPECT_EQ(folders(home + "/data", ""), home + "/data");
    for (const std::string& sandboxes : {home + "/snap/code/12/.local/share", home + "/.var/app/org.a.B/data",
                                         home + "/x/../snap/code", home + "/snap", std::string("relative")}) {
        EXPECT_EQ(folders(sandboxes, ""), home + "/.local/share") << sandboxes;
        EXPECT_EQ(folders(sandboxes, "/elsewhere"), "/elsewhere") << sandboxes;
        EXPECT_EQ(folders(sandboxes, sandboxes.c_str()), home + "/.local/share") << sandboxes;
    }
    makeFolder(testHome() / "snap/code");
    makeLink(testHome() / "link", "snap");
    EXPECT_EQ(folders(home + "/link/code", ""), home + "/.local/share");
    EXPECT_EQ(folders(home + "/snapshots", ""), home + "/snapshots");
}

TEST_F(WorldTest, AMadeUpWorldShowsAMacUnlessItSaysOtherwise) {
    EXPECT_EQ(World::below("/", testHome()).layout, Layout::macos);
    EXPECT_EQ(World::below("/", testHome(), Layout::linuxDesktop).layout, Layout::linuxDesktop);
    EXPECT_EQ(World::below("/", testHome(), Layout::linuxDesktop).cacheHome, testHome() / ".cache");
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

#include "platform/world.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "support/temporary_home.h"

namespace vesk {
namespace {

using testing::makeFolder;
using testing::testHome;

class WorldTest : public testing::TemporaryHome {};

TEST_F(WorldTest, TheTestsOwnWorldIsNotReal) {
    EXPECT_FALSE(world().isReal());
}

TEST_F(WorldTest, AMadeUpHomeIsNotRealEvenBelowTheRealRoot) {
    makeFolder(testHome() / "other");
    EXPECT_FALSE(World::below("/", testHome() / "other").isReal());
    EXPECT_FALSE(World::below("/", testHome() / "missing").isReal());
    EXPECT_FALSE(World::below("/", "").isReal());
}

TEST_F(WorldTest, TheUserDatabasesHomeIsRealByWhateverPath) {
    const passwd* user = getpwuid(getuid());  // NOLINT(concurrency-mt-unsafe): no other thread
    ASSERT_NE(user, nullptr);
    const std::filesystem::path home = user->pw_dir;
    if (!std::filesystem::exists(home)) {
        EXPECT_FALSE(World::below("/", home).isReal());
        GTEST_SKIP() << "this user's home folder does not exist";
    }
    EXPECT_TRUE(World::below("/", home).isReal());
    EXPECT_TRUE(World::below("/", home / ".").isReal());
    EXPECT_FALSE(World::below(testHome(), home).isReal());
}

}  // namespace
}  // namespace vesk

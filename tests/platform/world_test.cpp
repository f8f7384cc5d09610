#include "platform/world.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace vesk

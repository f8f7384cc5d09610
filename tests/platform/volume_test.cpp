#include "platform/system/volume.h"

#include "support/temporary_home.h"

namespace vesk {
namespace {

using namespace testing;

class VolumeTest : public TemporaryHome {};

TEST_F(VolumeTest, TellsBothFiguresOfTheVolumeThatAFolderLiesOn) {
    const VolumeFigures figures = readVolumeFigures(testHome());
    ASSERT_TRUE(figures.totalCapacity);
    ASSERT_TRUE(figures.availableCapacity);
    EXPECT_GT(*figures.totalCapacity, 0);
    EXPECT_LE(*figures.availableCapacity, *figures.totalCapacity);
}

TEST_F(VolumeTest, TellsNothingOfAFolderThatIsNotThere) {
    const VolumeFigures figures = readVolumeFigures(testHome() / "missing");
    EXPECT_FALSE(figures.totalCapacity);
    EXPECT_FALSE(figures.availableCapacity);
}

}  // namespace
}  // namespace vesk

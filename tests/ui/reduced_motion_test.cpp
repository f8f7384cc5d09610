#include "platform/system/desktop.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <locale>

#include "platform/world.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

class ReducedMotionTest : public testing::TemporaryHome {
protected:
    static void write(const char* file, const char* text) {
        const std::filesystem::path path = world().configHome / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }
};

TEST_F(ReducedMotionTest, IsNotWantedWithoutASetting) {
    EXPECT_FALSE(reducedMotionWanted());
}

TEST_F(ReducedMotionTest, IsReadFromTheToolkitsSettings) {
    write("gtk-3.0/settings.ini", "[Settings]\ngtk-theme-name=Adwaita\ngtk-enable-animations = 0\n");
    EXPECT_TRUE(reducedMotionWanted());
    write("gtk-3.0/settings.ini", "[Settings]\ngtk-enable-animations=1\n");
    EXPECT_FALSE(reducedMotionWanted());
    write("gtk-4.0/settings.ini", "[Settings]\r\ngtk-enable-animations=false\r\n");
    EXPECT_TRUE(reducedMotionWanted());
}

TEST_F(ReducedMotionTest, IsReadFromTheDesktopsSettings) {
    write("kdeglobals", "[General]\nAnimationDurationFactor=0\n[KDE]\nAnimationDurationFactor=0.5\n");
    EXPECT_FALSE(reducedMotionWanted());
    write("kdeglobals", "[KDE]\nAnimationDurationFactor=0\n");
    EXPECT_TRUE(reducedMotionWanted());
}

TEST_F(ReducedMotionTest, TheDesktopsFactorHasADecimalPointInEveryLocale) {
    class DecimalComma : public std::numpunct<char> {
    protected:
        char do_decimal_point() const override { return ','; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new DecimalComma));
    write("kdeglobals", "[KDE]\nAnimationDurationFactor=0.5\n");
    EXPECT_FALSE(reducedMotionWanted());
    std::locale::global(before);
}

TEST_F(ReducedMotionTest, OddSettingsFilesAreNoAnswer) {
    write("gtk-3.0/settings.ini", "gtk-enable-animations=0\n[Settings\n[Settings]x\ngtk-enable-animations");
    EXPECT_FALSE(reducedMotionWanted());
    write("kdeglobals", "[KDE]\nAnimationDurationFactor=fast\n");
    EXPECT_FALSE(reducedMotionWanted());
    std::filesystem::create_directories(world().configHome / "gtk-4.0/settings.ini");
    EXPECT_FALSE(reducedMotionWanted());
}

}  // namespace
}  // namespace vesk

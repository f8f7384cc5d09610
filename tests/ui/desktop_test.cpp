#include "platform/system/desktop.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <locale>
#include <string>

#include "platform/world.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

class DesktopTest : public testing::TemporaryHome {
protected:
    static void write(const char* file, const std::string& text) {
        testing::writeFile(world().configHome / file, text);
    }
};
class ReducedMotionTest : public DesktopTest {};
class TextScaleTest : public DesktopTest {};

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

TEST_F(TextScaleTest, IsTheUsualWithoutASetting) {
    EXPECT_EQ(desktopTextScale(), 1);
}

TEST_F(TextScaleTest, IsReadFromTheToolkitsSettings) {
    write("gtk-3.0/settings.ini", "[Settings]\ngtk-xft-dpi=122880\n");  // 120 dots per inch
    EXPECT_EQ(desktopTextScale(), 1.25);
    write("gtk-4.0/settings.ini", "[Settings]\ngtk-theme-name=x\ngtk-xft-dpi = 147456\n");
    EXPECT_EQ(desktopTextScale(), 1.5);
    write("gtk-4.0/settings.ini", "[Settings]\ngtk-xft-dpi=98304\n");
    write("gtk-3.0/settings.ini", "[Settings]\ngtk-xft-dpi=98304\n");
    EXPECT_EQ(desktopTextScale(), 1);
}

TEST_F(TextScaleTest, IsReadFromTheDesktopsSettings) {
    write("kcmfonts", "[General]\nforceFontDPI=144\n");
    EXPECT_EQ(desktopTextScale(), 1.5);
    write("kcmfonts", "[General]\nforceFontDPI=0\nforceFontDPIWayland=192\n");
    EXPECT_EQ(desktopTextScale(), 2);
}

TEST_F(TextScaleTest, NonsenseIsTheUsual) {
    for (const char* value : {"-1", "0", "", "large", "1e300", "nan", "1024"}) {
        write("gtk-3.0/settings.ini", std::string("[Settings]\ngtk-xft-dpi=") + value + "\n");
        write("kcmfonts", std::string("[General]\nforceFontDPI=") + value + "\n");
        EXPECT_EQ(desktopTextScale(), 1) << value;
    }
}

}  // namespace
}  // namespace vesk

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "platform/system/desktop.h"
#include "platform/world.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

class TextScaleTest : public testing::TemporaryHome {
protected:
    static void write(const char* file, const char* text) {
        const std::filesystem::path path = world().configHome / file;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << text;
    }
};

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
        write("gtk-3.0/settings.ini", (std::string("[Settings]\ngtk-xft-dpi=") + value + "\n").c_str());
        write("kcmfonts", (std::string("[General]\nforceFontDPI=") + value + "\n").c_str());
        EXPECT_EQ(desktopTextScale(), 1) << value;
    }
}

}  // namespace
}  // namespace vesk

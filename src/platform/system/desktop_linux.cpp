// Desktops on Linux have no settings for motion and for the size of text in common. GTK's are honoured by most of them
// (its own settings file, which GNOME's and Xfce's settings daemons and KDE's GTK bridge write), KDE has its own.

#include <array>
#include <cstdint>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

#include "platform/files/reading.h"
#include "platform/system/desktop.h"
#include "platform/system/key_file.h"
#include "platform/world.h"

namespace vesk {

namespace {

// The newer first.
constexpr std::array<std::string_view, 2> gtkSettings{"gtk-4.0/settings.ini", "gtk-3.0/settings.ini"};

// A value of one of the settings files; absent when the file, the group or the key is missing.
std::optional<std::string> setting(std::string_view file, std::string_view group, std::string_view key) {
    constexpr std::int64_t largest = std::int64_t{1024} * 1024;
    const auto text = readWithoutTrace(world().configHome / file, largest);
    return text ? keyFileValue(*text, group, key) : std::nullopt;
}

bool isFalse(const std::optional<std::string>& value) {
    return value && (*value == "0" || *value == "false" || *value == "False" || *value == "FALSE");
}

// The number with a decimal point, whatever the user's locale writes; absent where there is none. (libc++ has no
// std::from_chars for doubles.)
std::optional<double> numberIn(const std::optional<std::string>& value) {
    std::istringstream stream(value.value_or(""));
    stream.imbue(std::locale::classic());
    double number = 0;
    return stream >> number ? std::optional(number) : std::nullopt;
}

// Dots per inch that text is set for, as a multiple of the usual ones; 1 where a setting says nothing sensible.
double scaleOf(std::optional<double> dotsPerInch) {
    constexpr double usual = 96;
    constexpr double least = 48;
    constexpr double most = 480;
    return dotsPerInch && *dotsPerInch >= least && *dotsPerInch <= most ? *dotsPerInch / usual : 1;
}

}  // namespace

bool reducedMotionWanted() {
    for (const std::string_view file : gtkSettings) {
        if (isFalse(setting(file, "Settings", "gtk-enable-animations"))) {
            return true;
        }
    }
    return numberIn(setting("kdeglobals", "KDE", "AnimationDurationFactor")).value_or(1) <= 0;
}

double desktopTextScale() {
    constexpr double gtkUnits = 1024;  // of a dot per inch
    for (const std::string_view key : {"forceFontDPIWayland", "forceFontDPI"}) {
        const double scale = scaleOf(numberIn(setting("kcmfonts", "General", key)));
        if (scale != 1) {
            return scale;
        }
    }
    for (const std::string_view file : gtkSettings) {
        const auto value = numberIn(setting(file, "Settings", "gtk-xft-dpi"));
        const double scale = value ? scaleOf(*value / gtkUnits) : 1;
        if (scale != 1) {
            return scale;
        }
    }
    return 1;
}

void openFullDiskAccessSettings() {
}

}  // namespace vesk

// Desktops on Linux have no settings for motion and for the size of text in common. GTK's are honoured by most of them
// (its own settings file, which GNOME's and Xfce's settings daemons and KDE's GTK bridge write), KDE has its own.

#include <filesystem>
#include <fstream>
#include <locale>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <system_error>

#include "platform/system/desktop.h"
#include "platform/text.h"
#include "platform/world.h"

namespace vesk {

namespace {

constexpr std::string_view iniBlanks = " \t\r";

// The value of a key in a section of an .ini file; absent when the file, the section or the key is missing.
std::optional<std::string> iniValue(const std::filesystem::path& path, std::string_view section, std::string_view key) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) {
        return std::nullopt;  // opening a FIFO would wait for its writer
    }
    std::ifstream file(path);
    bool inSection = false;
    for (std::string line; std::getline(file, line);) {
        const std::string_view text = trimmed(line, iniBlanks);
        if (text.starts_with('[')) {
            inSection = text.substr(1).starts_with(section) && text.ends_with(']') && text.size() == section.size() + 2;
            continue;
        }
        const std::size_t equals = text.find('=');
        if (inSection && equals != std::string_view::npos && trimmed(text.substr(0, equals), iniBlanks) == key) {
            return std::string(trimmed(text.substr(equals + 1), iniBlanks));
        }
    }
    return std::nullopt;
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
    const std::filesystem::path& settings = world().configHome;
    for (const std::string_view toolkit : {"gtk-4.0", "gtk-3.0"}) {
        if (isFalse(iniValue(settings / toolkit / "settings.ini", "Settings", "gtk-enable-animations"))) {
            return true;
        }
    }
    return numberIn(iniValue(settings / "kdeglobals", "KDE", "AnimationDurationFactor")).value_or(1) <= 0;
}

double desktopTextScale() {
    constexpr double gtkUnits = 1024;  // of a dot per inch
    const std::filesystem::path& settings = world().configHome;
    for (const std::string_view key : {"forceFontDPIWayland", "forceFontDPI"}) {
        const double scale = scaleOf(numberIn(iniValue(settings / "kcmfonts", "General", key)));
        if (scale != 1) {
            return scale;
        }
    }
    for (const std::string_view toolkit : {"gtk-4.0", "gtk-3.0"}) {
        const auto value = numberIn(iniValue(settings / toolkit / "settings.ini", "Settings", "gtk-xft-dpi"));
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

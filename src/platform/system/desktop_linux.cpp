// Desktops on Linux have no setting for motion in common. GTK's is honoured by most of them (its own settings file,
// which GNOME's and Xfce's settings daemons and KDE's GTK bridge write), KDE has one of its own.

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

// Reads the number with a decimal point, whatever the user's locale writes. (libc++ has no std::from_chars for
// doubles.)
bool isZero(const std::optional<std::string>& value) {
    std::istringstream stream(value.value_or(""));
    stream.imbue(std::locale::classic());
    double number = 1;
    return stream >> number && number <= 0;
}

}  // namespace

bool reducedMotionWanted() {
    const std::filesystem::path& settings = world().configHome;
    for (const std::string_view toolkit : {"gtk-4.0", "gtk-3.0"}) {
        if (isFalse(iniValue(settings / toolkit / "settings.ini", "Settings", "gtk-enable-animations"))) {
            return true;
        }
    }
    return isZero(iniValue(settings / "kdeglobals", "KDE", "AnimationDurationFactor"));
}

void openFullDiskAccessSettings() {
}

}  // namespace vesk

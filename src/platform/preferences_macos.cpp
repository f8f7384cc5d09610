#include <QByteArray>
#include <QSettings>
#include <QString>
#include <QVariant>
#include <algorithm>
#include <utility>

#include "platform/preferences.h"
#include "platform/preferences_files.h"
#include "platform/world.h"

namespace vesk {

namespace {

// The user defaults of the application. QSettings writes "/" in a key as the "." that the defaults show, and a "." as
// another character.
QString defaultsKey(std::string_view key) {
    std::string text(key);
    std::replace(text.begin(), text.end(), '.', '/');
    return QString::fromStdString(text);
}

// Calls `use` with the application's own defaults, not those of the organization or the machine.
template <typename Use>
auto withDefaults(Use use) {
    QSettings defaults;
    defaults.setFallbacksEnabled(false);
    return use(defaults);
}

bool store(std::string_view key, const QVariant& value) {
    return withDefaults([&](QSettings& defaults) {
        defaults.setValue(defaultsKey(key), value);
        defaults.sync();
        return defaults.status() == QSettings::NoError;
    });
}

QVariant stored(std::string_view key) {
    return withDefaults([&](QSettings& defaults) { return defaults.value(defaultsKey(key)); });
}

}  // namespace

// A made-up world has files of its own; an empty folder stands for the user defaults, which it must not reach.
Preferences::Preferences() : folder_(isWorldOfCurrentUser() ? std::filesystem::path() : world().configHome / "vesk") {
}

Preferences::Preferences(std::filesystem::path folder) : folder_(std::move(folder)) {
}

std::optional<bool> Preferences::boolean(std::string_view key) const {
    if (!folder_.empty()) {
        return booleanFromPreferenceFile(data(key));
    }
    const QVariant value = stored(key);
    return value.isValid() && value.canConvert<bool>() ? std::optional(value.toBool()) : std::nullopt;
}

bool Preferences::setBoolean(std::string_view key, bool value) {
    return folder_.empty() ? store(key, value) : setData(key, preferenceFileText(value));
}

std::optional<std::string> Preferences::data(std::string_view key) const {
    if (!folder_.empty()) {
        return readPreferenceFile(folder_, key);
    }
    const QVariant value = stored(key);
    return value.userType() == QMetaType::QByteArray ? std::optional(value.toByteArray().toStdString()) : std::nullopt;
}

bool Preferences::setData(std::string_view key, std::string_view bytes) {
    if (!folder_.empty()) {
        return writePreferenceFile(folder_, key, bytes);
    }
    return store(key, QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size())));
}

}  // namespace vesk

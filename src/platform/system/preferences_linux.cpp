#include <utility>

#include "platform/system/preference_files.h"
#include "platform/system/preferences.h"
#include "platform/world.h"

namespace vesk {

Preferences::Preferences() : Preferences(world().configHome / "vesk") {
}

Preferences::Preferences(std::filesystem::path folder) : folder_(std::move(folder)) {
}

std::filesystem::path Preferences::lockFile() const {
    return folder_ / "in-use.lock";
}

std::optional<bool> Preferences::boolean(std::string_view key) const {
    return booleanFromPreferenceFile(data(key));
}

bool Preferences::setBoolean(std::string_view key, bool value) {
    return setData(key, preferenceFileText(value));
}

std::size_t Preferences::size(std::string_view key) const {
    return preferenceFileSize(folder_, key);
}

StoredBytes Preferences::read(std::string_view key) const {
    return readPreferenceFile(folder_, key);
}

bool Preferences::setData(std::string_view key, std::string_view bytes) {
    return writePreferenceFile(folder_, key, bytes);
}

void Preferences::removeUnfinished() {
    removeUnfinishedPreferenceFiles(folder_);
}

}  // namespace vesk

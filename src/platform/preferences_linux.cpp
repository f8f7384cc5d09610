#include <utility>

#include "platform/preferences.h"
#include "platform/world.h"

namespace vesk {

Preferences::Preferences() : Preferences(world().configHome / "vesk") {
}

Preferences::Preferences(std::filesystem::path folder) : files_(std::in_place, std::move(folder)) {
}

std::optional<bool> Preferences::boolean(std::string_view key) const {
    return files_->boolean(key);
}

bool Preferences::setBoolean(std::string_view key, bool value) {
    return files_->setBoolean(key, value);
}

std::optional<std::string> Preferences::data(std::string_view key) const {
    return files_->data(key);
}

bool Preferences::setData(std::string_view key, std::string_view bytes) {
    return files_->setData(key, bytes);
}

}  // namespace vesk

#include "platform/files/files.h"
#include "platform/files/files_system.h"

namespace vesk {

std::shared_ptr<const void> readyToFollowLinks() {
    return nullptr;
}

// The thread of a scan has asked to leave access dates alone, whatever it does (directory_macos.cpp).
bool followWithoutTrace(const std::filesystem::path& /*link*/, std::optional<std::filesystem::path>& /*target*/) {
    return false;
}

}  // namespace vesk

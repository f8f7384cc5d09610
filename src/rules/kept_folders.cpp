#include "rules/kept_folders.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "platform/files/files.h"
#include "platform/system/user_folders.h"
#include "platform/world.h"
#include "rules/place_search.h"

namespace vesk::rules {

namespace {

namespace fs = std::filesystem;

}  // namespace

KeptFolders::KeptFolders() {
    if (!isOnLinux()) {
        return;
    }
    for (const auto& [name, folder] : userFolders()) {
        keep(name == "PROJECTS" ? projects_ : folders_, folder);
    }
    for (const std::string_view start : {"CACHE", "CONFIG", "DATA", "LMSTUDIO"}) {
        for (const fs::path& folder : startsOf(start)) {
            keep(folders_, folder);
        }
    }
    for (const auto& [variable, folder] : world().variableFolders) {
        keep(folders_, folder);
    }
}

void KeptFolders::keep(std::set<fs::path>& kept, const fs::path& folder) {
    kept.insert(folder.lexically_normal());
    const std::optional<ResourceValues> values = resourceValues(folder);
    if (const auto target = values && values->isSymbolicLink ? followLink(folder) : std::nullopt) {
        kept.insert(*target);
    }
}

bool KeptFolders::isAround(const fs::path& folder) const {
    const auto holds = [&](const fs::path& kept) { return kept == folder || liesBelow(kept, folder); };
    return std::any_of(folders_.begin(), folders_.end(), holds) ||
           std::any_of(projects_.begin(), projects_.end(), holds);
}

}  // namespace vesk::rules

#include "state/seen_folders.h"

namespace vesk {

void SeenFolders::look(const std::vector<Card>& cards) {
    for (const Card& card : cards) {
        for (const Entry& entry : card.entries) {
            const std::filesystem::path folder = entry.url.parent_path();
            const auto [place, isNew] = folders_.try_emplace(folder.native());
            if (isNew) {
                place->second = folderIdentity(folder);
            }
        }
    }
}

std::optional<FolderIdentity> SeenFolders::folderOf(const std::filesystem::path& item) const {
    const auto found = folders_.find(item.parent_path().native());
    return found == folders_.end() ? std::nullopt : found->second;
}

}  // namespace vesk

#include "state/seen_items.h"
#include "platform/files/identity.h"

namespace vesk {

void SeenItems::look(const std::vector<Card>& cards, const Probe& probe) {
    for (const Card& card : cards) {
        for (const Entry& entry : card.entries) {
            const std::filesystem::path folder = entry.url.parent_path();
            const auto [place, isNew] = folders_.try_emplace(folder.native());
            if (isNew) {
                place->second = folderIdentity(folder);
            }
            if (const auto judged = probe.judgedBy.find(entry.url); judged != probe.judgedBy.end()) {
                dates_.emplace(entry.url.native(), judged->second);
            }
        }
    }
}

void SeenItems::merge(SeenItems other) {
    folders_.merge(other.folders_);
    dates_.merge(other.dates_);
}

SeenItem SeenItems::itemAt(const std::filesystem::path& path) const {
    const auto folder = folders_.find(path.parent_path().native());
    const auto dates = dates_.find(path.native());
    return {path, folder == folders_.end() ? std::nullopt : folder->second,
            dates == dates_.end() ? ItemDates{} : dates->second, 0};
}

}  // namespace vesk

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
    if (folders_.empty() && dates_.empty()) {
        *this = std::move(other);
        return;
    }
    folders_.merge(other.folders_);
    dates_.merge(other.dates_);
}

void SeenItems::tell(SeenItem& item) const {
    if (const auto folder = folders_.find(item.path.parent_path().native()); folder != folders_.end()) {
        item.folder = folder->second;
    }
    if (const auto dates = dates_.find(item.path.native()); dates != dates_.end()) {
        item.dates = dates->second;
    }
}

}  // namespace vesk

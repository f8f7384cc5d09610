// What a scan saw of the entries of its cards, so that a clean can tell whether they are still the same: the folder of
// each, and the dates of those that are offered for their age.
// Filled on the threads of a scan's rules, one object each, and merged by ScanRun on the main thread.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <vector>

#include "core/card.h"
#include "core/probe.h"
#include "platform/files/identity.h"
#include "platform/trash/trash.h"

namespace vesk {

class SeenItems {
public:
    /// Looks at the folder of every entry of a rule's cards, at each folder once, and takes over the dates that the
    /// rule judged by.
    void look(const std::vector<Card>& cards, const Probe& probe);

    /// Takes over what another object saw. Of what both saw, the first look stays.
    void merge(SeenItems other);

    /// Tells of the item at its path what was seen there: nothing of its folder when that was not looked at or could
    /// not be.
    void tell(SeenItem& item) const;

private:
    std::map<std::filesystem::path::string_type, std::optional<ItemIdentity>> folders_;
    std::map<std::filesystem::path::string_type, ItemDates> dates_;
};

}  // namespace vesk

// What a scan recorded about the entries of its cards, so that a clean can tell whether they have changed: the folder
// of each, and the dates of those offered for their age. Each rule's thread fills an object of its own; ScanRun merges
// them on the main thread.
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
    /// Records the identity of the folder of every entry of a rule's cards, and the dates that the rule judged by.
    /// Stats each folder once.
    void look(const std::vector<Card>& cards, const Probe& probe);

    /// Adds what another object recorded. What is here already stays.
    void merge(SeenItems other);

    /// Fills in what was recorded for the item's path. The folder stays absent if it is not known.
    void tell(SeenItem& item) const;

private:
    std::map<std::filesystem::path::string_type, std::optional<ItemIdentity>> folders_;
    std::map<std::filesystem::path::string_type, ItemDates> dates_;
};

}  // namespace vesk

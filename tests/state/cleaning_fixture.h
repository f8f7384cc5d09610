// Shared by the tests of a Store's cleans.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "state/history_codec.h"
#include "state/store_home.h"

namespace vesk::testing {

class CleaningTest : public StoreHome {
protected:
    static std::filesystem::path junk() { return testHome() / "Junk"; }

    static Card snapshotCard(std::vector<std::string> ids) {
        Card card;
        card.id = "snapshots";
        card.title = "Snapshots";
        card.snapshotIDs = std::move(ids);
        card.selected = true;
        return card;
    }
    // What the next start of the program would find.
    static std::vector<HistoryEntry> storedHistory() {
        return decodeHistory(Preferences().data("vesk.history").value_or("")).value_or(std::vector<HistoryEntry>());
    }
};

}  // namespace vesk::testing

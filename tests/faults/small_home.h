// A small home in which several rules find something, and checks of where each item is and whether it is unchanged.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "state/history_entry.h"

namespace vesk::testing {

/// At testRoot() and testHome(). Contains items that rules offer, others that must not be touched, a backup tool with
/// one snapshot, an older item in the Trash, and a history that lists it.
class SmallHome {
public:
    /// Creates it, replacing whatever was there.
    void make();

    /// The items that a scan offers if nothing fails.
    std::vector<std::filesystem::path> items() const;
    /// Offered only if the installed applications cannot be listed: they then count as gone. That card starts unticked.
    static std::filesystem::path folderOfAnApplication();

    /// Fails the test unless each item is whole, at its place or in the Trash with a record of its place, and
    /// everything else is unchanged. With `onceOnly`, none may be in both.
    void expectNothingLost(bool onceOnly) const;
    /// Fails the test unless every item is at its place, and the Trash contains only the older item and its record.
    void expectAllInPlace() const;

    /// The items in the Trash whose record has this place.
    static std::vector<std::filesystem::path> trashedFrom(const std::filesystem::path& place);
    /// How often the backup tool has deleted the snapshot.
    static std::size_t snapshotsDeleted();
    /// Returns the stored history. Fails the test unless it can be read and lists the older item.
    static std::vector<HistoryEntry> storedHistory();

private:
    using Portrait = std::map<std::string, std::string>;

    void add(const std::filesystem::path& item);
    void keep(const std::filesystem::path& item);

    // As they were made, by path.
    std::map<std::filesystem::path, Portrait> items_;
    std::map<std::filesystem::path, Portrait> kept_;
};

}  // namespace vesk::testing

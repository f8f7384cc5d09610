// A small home in which several rules find something, and the account of it: where each item is, and whether it is
// still what it was.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "state/history_entry.h"

namespace vesk::testing {

/// Lies at testRoot() and testHome(). Holds items that rules offer, others that nobody may touch, a backup tool with
/// one snapshot, an item of an older day in the Trash, and a history that tells of it.
class SmallHome {
public:
    /// Makes it, in place of whatever was there.
    void make();

    /// Items that a scan offers when nothing fails.
    std::vector<std::filesystem::path> items() const;
    /// What is offered only when the installed applications could not be told: by rule they then count as gone, and the
    /// card that offers their folders starts without a tick.
    static std::filesystem::path folderOfAnApplication();

    /// Fails the test unless each item is, whole, at its place or in the Trash with its place on record, and all else
    /// is as it was made. With `onceOnly`, none may be at both.
    void expectNothingLost(bool onceOnly) const;
    /// Fails the test unless every item is at its place, and the Trash holds nothing but the item of the older day and
    /// no record but its.
    void expectAllInPlace() const;

    /// The items in the Trash whose record tells this place.
    static std::vector<std::filesystem::path> trashedFrom(const std::filesystem::path& place);
    /// How often the backup tool has deleted the snapshot.
    static std::size_t snapshotsDeleted();
    /// Fails the test unless the stored history can be read and tells of the older day.
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

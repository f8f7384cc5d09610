// What Vesk notes of the items of each run, so that an undo can tell them from others that have their names in the
// Trash by then: a file for each run, beside the preferences. docs/history-format.md describes it.
//
// The history does without: where a file is missing or cannot be read, nothing is known of that run's items beyond what
// the Trash has on record. Callable from any thread.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/trash/trash.h"
#include "platform/uuid.h"
#include "state/history_entry.h"

namespace vesk {

/// What is known of each item that a run moved, in the order of its moves.
using Receipt = std::vector<std::optional<TrashedIdentity>>;

/// A receipt, and the identity of the folder that its file lies in: a copy on another disk lies in another one, and
/// there the items have other identities too.
struct StoredReceipt {
    std::optional<LastingIdentity> folder;
    Receipt items;
    friend bool operator==(const StoredReceipt&, const StoredReceipt&) = default;
};

std::string encodeReceipt(const StoredReceipt& receipt);
/// Reads what `encodeReceipt` writes; absent for anything else.
std::optional<StoredReceipt> decodeReceipt(std::string_view bytes);

class Receipts {
public:
    explicit Receipts(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// Stores the receipt of a run, so that it outlasts a crash. Returns false when it could not be stored.
    bool write(const Uuid& run, const Receipt& receipt) const;
    /// The receipt of a run that has made so many moves; nothing is known of any of them where it cannot be had.
    Receipt read(const Uuid& run, std::size_t moves) const;
    /// Removes the receipts of all other runs.
    void removeAllBut(const std::vector<HistoryEntry>& runs) const;

private:
    std::filesystem::path folder_;
};

/// The items of a run as an undo asks for them, with what its receipt knows of them.
std::vector<TrashedItem> trashedItems(const std::vector<HistoryEntry::Move>& moves, Date cleaned,
                                      const Receipt& receipt);

}  // namespace vesk

// Receipts: what Vesk records about the items of each run, so that an undo can tell them from other items that have
// taken their names in the Trash since. One file per run, beside the preferences (docs/history-format.md).
//
// The history works without them: if a file is missing or unreadable, only the Trash's own records are known. Callable
// from any thread.
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

/// What is known about each item that a run moved, in the order of its moves.
using Receipt = std::vector<std::optional<TrashedIdentity>>;

/// A receipt, and the identity of its file's folder. If a home was copied to another disk, that differs, and so do the
/// identities of the items.
struct StoredReceipt {
    std::optional<LastingIdentity> folder;
    Receipt items;
    friend bool operator==(const StoredReceipt&, const StoredReceipt&) = default;
};

std::string encodeReceipt(const StoredReceipt& receipt);
/// Decodes what `encodeReceipt` writes; absent for anything else.
std::optional<StoredReceipt> decodeReceipt(std::string_view bytes);

class Receipts {
public:
    explicit Receipts(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// Stores the receipt of a run durably. Returns false if that failed.
    bool write(const Uuid& run, const Receipt& receipt) const;
    /// The receipt of a run with this number of moves. If it cannot be read or does not fit, every item is absent.
    Receipt read(const Uuid& run, std::size_t moves) const;
    /// Removes the receipts of all other runs.
    void removeAllBut(const std::vector<HistoryEntry>& runs) const;

private:
    std::filesystem::path folder_;
};

/// The items of a run with what its receipt says about them, for an undo.
std::vector<TrashedItem> trashedItems(const std::vector<HistoryEntry::Move>& moves, Date cleaned,
                                      const Receipt& receipt);

}  // namespace vesk

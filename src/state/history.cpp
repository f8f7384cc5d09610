#include "state/history.h"

#include <algorithm>
#include <string>
#include <utility>

#include "state/history_codec.h"

namespace vesk {

namespace {

constexpr std::string_view historyKey = "vesk.history";
constexpr std::size_t keptEntries = 50;

}  // namespace

History::History(Preferences& preferences) : preferences_(preferences) {
    load();
}

std::optional<std::size_t> History::rowOf(const Uuid& id) const {
    const auto found =
        std::find_if(entries().begin(), entries().end(), [&](const HistoryEntry& entry) { return entry.id == id; });
    return found == entries().end() ? std::nullopt : std::optional(static_cast<std::size_t>(found - entries().begin()));
}

std::function<std::vector<TrashedItem>()> History::itemsOf(const HistoryEntry& entry) const {
    const auto unsaved = std::find_if(unsavedReceipts_.begin(), unsavedReceipts_.end(),
                                      [&](const UnsavedReceipt& receipt) { return receipt.run == entry.id; });
    const std::optional<Receipt> known =
        unsaved == unsavedReceipts_.end() ? std::nullopt : std::optional(unsaved->items);
    return [run = entry.id, moves = entry.moves, cleaned = dateFromHistory(entry.date), known, receipts = receipts_] {
        return trashedItems(moves, cleaned, known ? *known : receipts.read(run, moves.size()));
    };
}

void History::setUndone(const Uuid& id, bool undone) {
    if (const std::optional<std::size_t> row = rowOf(id)) {
        list_.setUndone(*row, undone);
        undoneHere_.push_back(id);
    }
}

// Returns false when something is stored that could not be read.
bool History::load() {
    StoredBytes stored = preferences_.read(historyKey);
    if (!stored.bytes) {
        return !stored.unreadable;
    }
    const std::size_t fingerprint = std::hash<std::string>()(*stored.bytes);
    if (fingerprint == fingerprint_) {
        return true;
    }
    // What cannot be decoded stays stored until the next save.
    std::vector<HistoryEntry> read = decodeHistory(*std::move(stored.bytes)).value_or(std::vector<HistoryEntry>());
    if (entries().empty()) {
        list_.append(std::move(read));
    } else {
        list_.merge(std::move(read), undoneHere_, keptEntries);
    }
    fingerprint_ = fingerprint;
    return true;
}

void History::save() {
    // Something else may be stored by now than was read: by another Vesk, whose lock somebody removed, by a save that
    // said it had failed, or because the disk did not yield it at the start. As long as nobody could read it, nothing
    // replaces it.
    const bool replaceable = load() || fingerprint_;
    list_.trim(keptEntries);
    std::erase_if(unsavedReceipts_,
                  [&](const UnsavedReceipt& receipt) { return receipts_.write(receipt.run, receipt.items); });
    std::string text = encodeHistory(entries());
    while (text.size() > Preferences::largestValue && entries().size() > 1) {
        list_.trim(entries().size() - 1);
        text = encodeHistory(entries());
    }
    isSaved_ = replaceable && preferences_.setData(historyKey, text);
    if (isSaved_) {
        fingerprint_ = std::hash<std::string>()(text);
        undoneHere_.clear();
        receipts_.removeAllBut(entries());
    }
}

}  // namespace vesk

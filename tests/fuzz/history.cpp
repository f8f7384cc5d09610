// The stored history: whatever the preferences contain is either rejected or read as something that can be written
// again.

#include "fuzz.h"
#include "platform/text.h"
#include "state/history_codec.h"

namespace {

using vesk::HistoryEntry;

// One entry whose every text comes from the input, cut in three.
HistoryEntry entryOf(const std::string& bytes) {
    HistoryEntry entry;
    const std::size_t third = bytes.size() / 3;
    entry.titles = {bytes.substr(0, third), ""};
    entry.moves = {{bytes.substr(third, third), bytes.substr(2 * third), -1}};
    for (std::size_t i = 0; i < bytes.size() && i < entry.id.bytes.size(); ++i) {
        entry.id.bytes[i] = static_cast<std::uint8_t>(bytes[i]);
    }
    return entry;
}

std::string kept(const std::string& text) {
    return vesk::isUtf8(text) ? text : std::string();
}

void readsWhatItWrites(const HistoryEntry& entry) {
    const auto read = vesk::decodeHistory(vesk::encodeHistory({entry}));
    VESK_HOLDS(read && read->size() == 1);
    const HistoryEntry& back = read->front();
    VESK_HOLDS(back.id == entry.id && back.moves.size() == 1 && back.titles.size() == 2);
    // A text that is not valid UTF-8 changes; no other text does.
    VESK_HOLDS(kept(entry.titles[0]).empty() || back.titles[0] == entry.titles[0]);
    VESK_HOLDS(kept(entry.moves[0].original).empty() || back.moves[0].original == entry.moves[0].original);
    VESK_HOLDS(kept(entry.moves[0].trashed).empty() || back.moves[0].trashed == entry.moves[0].trashed);
    VESK_HOLDS(back.moves[0].size == -1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = vesk::testing::bytesOf(data, size);
    if (const auto entries = vesk::decodeHistory(bytes)) {
        // What the next start of the program would find.
        const std::string written = vesk::encodeHistory(*entries);
        VESK_HOLDS(vesk::isUtf8(written));
        const auto again = vesk::decodeHistory(written);
        VESK_HOLDS(again == entries);
    }
    readsWhatItWrites(entryOf(bytes));
    return 0;
}

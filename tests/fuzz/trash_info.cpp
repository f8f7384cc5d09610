// The Trash's record of an item: every place that can be written is read back unchanged, and other programs' records
// are read or rejected.

#include <algorithm>

#include "fuzz.h"
#include "platform/trash/trash_info.h"

namespace {

// The place is written so that no program can misread it: plain characters on a line of its own.
void isPlainText(const std::string& text) {
    VESK_HOLDS(std::count(text.begin(), text.end(), '\n') == 3);
    VESK_HOLDS(std::all_of(text.begin(), text.end(), [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); }));
    VESK_HOLDS(text.rfind("[Trash Info]\nPath=", 0) == 0 && text.find("\nDeletionDate=") != std::string::npos);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = vesk::testing::bytesOf(data, size);
    const vesk::Date date = vesk::dateFromUnix(static_cast<std::int64_t>(size) * 1'000'000 - 1'000'000'000, 0);

    const std::string written = vesk::trashInfoText(bytes, date);
    isPlainText(written);
    VESK_HOLDS(vesk::placeInTrashInfo(written) == bytes);

    for (const std::string& foreign : {bytes, "[Trash Info]\n" + bytes, "[Trash Info]\nPath=" + bytes}) {
        if (const auto place = vesk::placeInTrashInfo(foreign)) {
            VESK_HOLDS(place->size() <= foreign.size() && place->find('\n', place->size()) == std::string::npos);
            VESK_HOLDS(vesk::placeInTrashInfo(vesk::trashInfoText(*place, date)) == *place);
        }
    }
    return 0;
}

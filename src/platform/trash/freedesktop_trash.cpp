#include "platform/trash/freedesktop_trash.h"

#include <cerrno>
#include <memory>
#include <optional>
#include <string>

#include "platform/trash/trash_entry.h"
#include "platform/trash/trash_place.h"

namespace vesk {

TrashOutcome moveToFreedesktopTrash(const HeldItem& item) {
    const auto notMoved = [](int failure) { return TrashOutcome{posixError(failure), {}, {}}; };
    const auto trash = std::make_shared<OpenTrash>();
    if (const int failure = openTrashFor(item, *trash)) {
        return notMoved(failure);
    }
    const std::optional<std::string> place = recordedPlace(item, *trash);
    if (!place) {
        return notMoved(ENOENT);
    }
    TrashEntry entry(item.name, *place, trash, nullptr);
    if (const int failure = entry.record(RecordSync::now)) {
        return notMoved(failure);
    }
    if (const int failure = entry.move(item)) {
        return notMoved(failure);
    }
    return {std::nullopt, entry.place(), entry.identity()};
}

}  // namespace vesk

// The contents of a Trash's record of an item: the "trashinfo" file of the freedesktop.org Trash specification 1.0.
// Pure functions, callable from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/date.h"

namespace vesk {

/// What a record's name adds to its item's name in the Trash.
inline constexpr std::string_view trashInfoSuffix = ".trashinfo";

/// The text of the record of an item that was at `place` (absolute, or relative to the top of its volume; any bytes)
/// and was deleted at this time.
std::string trashInfoText(std::string_view place, Date deleted);

/// The original place in a record; absent if it has none.
std::optional<std::string> placeInTrashInfo(std::string_view text);

/// The deletion date in a record, to the second; absent if it has none. Records contain local time without a zone: this
/// machine's zone is assumed, and of an hour that occurs twice, the first.
std::optional<Date> deletionInTrashInfo(std::string_view text);

}  // namespace vesk

// The record that a Trash keeps of each item: the "trashinfo" file of the freedesktop.org Trash specification 1.0.
// Pure functions, callable from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/date.h"

namespace vesk {

/// What follows an item's name in the Trash in the name of its record.
inline constexpr std::string_view trashInfoSuffix = ".trashinfo";

/// The text of the record of an item that came from `place` (absolute, or relative to the folder that its volume is
/// mounted at; any bytes) and was deleted at this time.
std::string trashInfoText(std::string_view place, Date deleted);

/// The place that a record tells; absent when it tells none.
std::optional<std::string> placeInTrashInfo(std::string_view text);

/// The date of deletion that a record tells, to the second; absent when it tells none. Records keep local time without
/// its zone: it is taken for this machine's, and an hour that comes twice for the first of the two.
std::optional<Date> deletionInTrashInfo(std::string_view text);

}  // namespace vesk

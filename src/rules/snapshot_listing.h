// Parses the backup tool's list of local snapshots. Pure functions, callable from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/date.h"

namespace vesk::rules {

/// The snapshots' stamps ("2024-05-01-101530") in the order listed, from the lines that start with the snapshots'
/// prefix. A stamp of another form is kept too: it is the name by which the tool knows the snapshot.
std::vector<std::string> stampsIn(std::string_view output);

/// When a snapshot was taken. Stamps are in local time. Absent if the text is not a valid stamp.
std::optional<Date> dateOfStamp(const std::string& stamp);

}  // namespace vesk::rules

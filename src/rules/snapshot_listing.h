// What the backup tool writes about local snapshots, taken apart. Pure functions, callable from any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/date.h"

namespace vesk::rules {

/// The snapshots' stamps ("2024-05-01-101530") in the order listed: what is left of each line that begins with the
/// snapshots' prefix. Other lines are passed over. A stamp that is none is kept as well: it is the name that the tool
/// knows the snapshot by.
std::vector<std::string> stampsIn(std::string_view output);

/// When a snapshot was taken: the stamp is in this computer's own time. Absent for a text that is no such stamp.
std::optional<Date> dateOfStamp(const std::string& stamp);

}  // namespace vesk::rules

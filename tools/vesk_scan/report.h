// The report of one finished scan, as a table for people or as JSON for programs.
#pragma once

#include <string>
#include <string_view>

#include "state/store.h"

namespace vesk {

/// A table of the cards (title, bucket, size, days unused, number of entries), the areas that could not be read, and
/// the totals.
std::string reportForPeople(const Store& store);

/// One JSON object: `cards` in display order, `blockedAreas`, `files`, `bytes`, `capacity`, `free`, `safeBytes`,
/// `smartBytes`, `personalBytes`. Dates are seconds since 1970 with fraction, or null; paths that are not UTF-8 carry
/// replacement characters. Control characters, also those that turn the direction of text, are escapes, so that no file
/// name can steer the terminal that shows the report.
std::string reportForPrograms(const Store& store);

/// A text of somebody else's as a terminal may show it: with such characters, quotes and backslashes as in JSON.
std::string printable(std::string_view text);

}  // namespace vesk

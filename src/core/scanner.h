// What rules use to turn measured items into cards. (The catalogue, Scanner::specs, is in rules/catalogue.h.) Callable
// from any thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/card.h"
#include "core/probe.h"

namespace vesk {

/// A place that a rule knows, and its entry's name.
struct FixedLocation {
    /// Relative to the home folder.
    std::string_view path;
    std::string_view name;
};

/// The constants of a card; each rule has one of these per card. See Card for the fields.
struct CardDescription {
    std::string_view id;
    std::string_view title;
    std::string_view symbol;
    Bucket bucket;
    double confidence;
    double risk;
    std::string_view summary;
    std::string_view why;
};

namespace Scanner {

/// The world's home folder, read once and kept for the life of the process.
const std::filesystem::path& home();

/// An empty card with this description, ticked if its bucket is safe.
Card emptyCard(const CardDescription& description);

/// Builds a card: drops entries of size 0 or less, sorts the largest first (stable) and computes the days unused.
/// Absent if no entry is left.
std::optional<Card> makeCard(const CardDescription& description, std::vector<Entry> entries);

/// The same, with the description's fields as separate arguments.
std::optional<Card> makeCard(std::string_view id, std::string_view title, std::string_view symbol, Bucket bucket,
                             double conf, double risk, std::string_view summary, std::string_view why,
                             std::vector<Entry> entries);

/// Days since the last use, with fraction; at least 1. `whenUnknown` if there is no date.
double dormancyDays(const std::optional<Date>& lastUsed, double whenUnknown);

/// Days since the newest `lastUsed` of the entries, with fraction; at least 1; 30 if none has a date.
double dormancyDays(const std::vector<Entry>& entries);

/// Measured entries for the locations that exist, in the order given.
std::vector<Entry> fixed(Probe& probe, std::span<const FixedLocation> locations);

/// A name for display: the capitalised second part of a reverse-domain identifier ("Acme" for "com.acme.Editor"); any
/// other text unchanged.
std::string pretty(std::string_view identifier);

/// The text in lower case, letters and numbers only; canonically equivalent texts give the same result.
std::string normalize(std::string_view text);

}  // namespace Scanner

}  // namespace vesk

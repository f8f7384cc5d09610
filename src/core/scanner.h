// What every rule uses to turn measured items into cards. (The catalogue, Scanner::specs, is rules/catalogue.h.)
// Callable from any thread.
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

/// A place that a rule knows, and the name that its entry carries.
struct FixedLocation {
    /// Relative to the home folder.
    std::string_view path;
    std::string_view name;
};

/// All of a card that is fixed: each rule has one of these for each of its cards. See Card for the fields.
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

/// The current user's home folder: the world's, read once and kept for the life of the process.
const std::filesystem::path& home();

/// A card of this description with nothing in it, ticked exactly when its bucket is safe.
Card emptyCard(const CardDescription& description);

/// Builds a card: drops the entries of size 0 or less, puts the largest first (equal ones keep their order), and works
/// out the days unused. Absent when no entry is left.
std::optional<Card> makeCard(const CardDescription& description, std::vector<Entry> entries);

/// The same with the fields of the description in a row.
std::optional<Card> makeCard(std::string_view id, std::string_view title, std::string_view symbol, Bucket bucket,
                             double conf, double risk, std::string_view summary, std::string_view why,
                             std::vector<Entry> entries);

/// Days since that use, with fraction; at least 1. `whenUnknown` for a use without a date.
double dormancyDays(const std::optional<Date>& lastUsed, double whenUnknown);

/// Days since the newest `lastUsed` among the entries, with fraction; at least 1, and 30 when none has a date.
double dormancyDays(const std::vector<Entry>& entries);

/// The entries of those locations below the home folder that exist, in the order given, each measured whole.
std::vector<Entry> fixed(Probe& probe, std::span<const FixedLocation> locations);

/// A name for display: the second part of a reverse-domain identifier with its first letter in upper case ("Acme" of
/// "com.acme.Editor"); any other text as it is.
std::string pretty(std::string_view identifier);

/// The text in lower case, reduced to letters and digits; canonically equivalent texts give the same result.
std::string normalize(std::string_view text);

}  // namespace Scanner

}  // namespace vesk

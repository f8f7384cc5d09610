#include "core/scanner.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/text.h"
#include "platform/world.h"

namespace vesk {

namespace {

constexpr double secondsPerDay = 86'400.0;
constexpr double dormancyOfUnknownUse = 30.0;

constexpr std::array<std::string_view, 6> domainPrefixes = {"com", "org", "io", "net", "dev", "app"};

std::vector<std::string_view> nonEmptyParts(std::string_view text, char separator) {
    std::vector<std::string_view> parts;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0) {
            parts.push_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

}  // namespace

const std::filesystem::path& Scanner::home() {
    // Never destroyed: a rule that hangs may outlive main.
    static const auto& home = *new std::filesystem::path(world().home);
    return home;
}

Card Scanner::emptyCard(const CardDescription& description) {
    Card card;
    card.id = description.id;
    card.title = description.title;
    card.symbol = description.symbol;
    card.bucket = description.bucket;
    card.confidence = description.confidence;
    card.risk = description.risk;
    card.summary = description.summary;
    card.why = description.why;
    card.selected = description.bucket == Bucket::safe;
    return card;
}

std::optional<Card> Scanner::makeCard(const CardDescription& description, std::vector<Entry> entries) {
    std::erase_if(entries, [](const Entry& entry) { return entry.size <= 0; });
    if (entries.empty()) {
        return std::nullopt;
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.size > b.size; });
    Card card = emptyCard(description);
    card.dormancyDays = dormancyDays(entries);
    card.entries = std::move(entries);
    return card;
}

std::optional<Card> Scanner::makeCard(std::string_view id, std::string_view title, std::string_view symbol,
                                      Bucket bucket, double conf, double risk, std::string_view summary,
                                      std::string_view why, std::vector<Entry> entries) {
    return makeCard(CardDescription{id, title, symbol, bucket, conf, risk, summary, why}, std::move(entries));
}

double Scanner::dormancyDays(const std::optional<Date>& lastUsed, double whenUnknown) {
    return std::max(leastDormancyDays, lastUsed ? secondsBetween(*lastUsed, now()) / secondsPerDay : whenUnknown);
}

double Scanner::dormancyDays(const std::vector<Entry>& entries) {
    std::optional<Date> latest;
    for (const Entry& entry : entries) {
        latest = std::max(latest, entry.lastUsed);
    }
    return dormancyDays(latest, dormancyOfUnknownUse);
}

std::vector<Entry> Scanner::fixed(Probe& probe, std::span<const FixedLocation> locations) {
    std::vector<Entry> entries;
    for (const FixedLocation& location : locations) {
        if (std::optional<Entry> entry = probe.entry(home() / location.path, std::string(location.name))) {
            entries.push_back(*std::move(entry));
        }
    }
    return entries;
}

std::string Scanner::pretty(std::string_view identifier) {
    const std::vector<std::string_view> parts = nonEmptyParts(identifier, '.');
    if (parts.size() < 3 ||
        std::find(domainPrefixes.begin(), domainPrefixes.end(), lowercased(parts[0])) == domainPrefixes.end()) {
        return std::string(identifier);
    }
    return withFirstCharacterUppercased(parts[1]);
}

std::string Scanner::normalize(std::string_view text) {
    return lettersAndNumbers(lowercased(text));
}

}  // namespace vesk

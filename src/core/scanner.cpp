#include "core/scanner.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/text.h"
#include "platform/world.h"

namespace vesk {

namespace {

constexpr double secondsPerDay = 86'400.0;
constexpr double leastDormancy = 1.0;
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

std::optional<Card> Scanner::makeCard(std::string id, std::string title, std::string symbol, Bucket bucket, double conf,
                                      double risk, std::string summary, std::string why, std::vector<Entry> entries) {
    std::erase_if(entries, [](const Entry& entry) { return entry.size <= 0; });
    if (entries.empty()) {
        return std::nullopt;
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.size > b.size; });
    Card card;
    card.id = std::move(id);
    card.title = std::move(title);
    card.symbol = std::move(symbol);
    card.bucket = bucket;
    card.confidence = conf;
    card.risk = risk;
    card.summary = std::move(summary);
    card.why = std::move(why);
    card.dormancyDays = dormancyDays(entries);
    card.entries = std::move(entries);
    card.selected = bucket == Bucket::safe;
    return card;
}

double Scanner::dormancyDays(const std::vector<Entry>& entries) {
    std::optional<Date> latest;
    for (const Entry& entry : entries) {
        latest = std::max(latest, entry.lastUsed);
    }
    const double days = latest ? secondsBetween(*latest, now()) / secondsPerDay : dormancyOfUnknownUse;
    return std::max(leastDormancy, days);
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

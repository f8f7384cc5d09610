// What lies at the top of Downloads and was neither changed nor opened for 60 days.

#include <chrono>
#include <string_view>

#include "core/scanner.h"
#include "rules/rule_support.h"
#include "rules/rules.h"

namespace vesk::rules {

namespace {

constexpr std::chrono::seconds age{5'184'000};
constexpr std::string_view downloads = "Downloads";

constexpr CardDescription downloadCard = {
    .id = "downloads",
    .title = "Downloads older than 60 days",
    .symbol = "arrow.down.circle",
    .bucket = Bucket::smart,
    .confidence = 0.6,
    .risk = 3.0,
    .summary = "Files you downloaded long ago and haven't opened since.",
    .why =
        "They might be installers you're done with, or something you still want. Take a quick look in 'What's "
        "inside' first.",
};

}  // namespace

std::vector<Card> oldDownloads(Probe& probe) {
    const Date cutOff = now() - age;
    const std::filesystem::path location = Scanner::home() / downloads;
    const auto old = [&](const FolderItem& item) -> std::optional<Offer> {
        const std::optional<ResourceValues> values = resourceValues(location / item.name);
        // By the item's own two dates, also for a folder.
        if (!values || !untouchedSince(cutOff, *values)) {
            return std::nullopt;
        }
        return Offer{label(item.name), {values->contentModificationDate, values->contentAccessDate}};
    };
    return cardOf(downloadCard, childrenIn(probe, downloads, ListingDetail::kinds, old));
}

}  // namespace vesk::rules

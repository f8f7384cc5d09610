// Browser clones, application caches and old crash reports: what the system and its applications leave behind and
// make again by themselves.

#include <array>
#include <chrono>
#include <memory>
#include <string_view>

#include "core/scanner.h"
#include "platform/text.h"
#include "platform/world.h"
#include "rules/place_search.h"
#include "rules/rule_support.h"
#include "rules/rules.h"
#include "rules/sandboxed_leftovers.h"

namespace vesk::rules {

namespace {

namespace clones {
constexpr std::string_view root = "/private/var/folders";
constexpr std::string_view holder = "X";
constexpr std::string_view mark = "code_sign_clone";
constexpr std::string_view braveMark = "brave";
constexpr const char* braveName = "Brave ghost clone";
constexpr const char* chromeName = "Chrome ghost clone";

// Chrome's title stands for both browsers.
constexpr CardDescription card = {
    .id = "clones",
    .title = "Chrome ghost clones",
    .symbol = "square.on.square.dashed",
    .bucket = Bucket::safe,
    .confidence = 0.95,
    .risk = 1.0,
    .summary = "Leftover copies Chrome and Brave make while updating themselves.",
    .why =
        "These temporary copies are only used while a browser is being verified or updated. The browser quietly makes "
        "a new one whenever it needs it.",
};
}  // namespace clones

namespace caches {
constexpr std::string_view location = "Library/Caches";
constexpr std::array<std::string_view, 3> skippedPrefixes = {"com.apple.", "Adobe", "."};
// The first five belong to the rules about downloads; "CloudKit" is never offered.
constexpr std::array<std::string_view, 6> skippedNames = {"Homebrew",    "pip",   "pnpm",
                                                          "huggingface", "torch", "CloudKit"};

constexpr CardDescription card = {
    .id = "caches",
    .title = "App caches",
    .symbol = "internaldrive",
    .bucket = Bucket::safe,
    .confidence = 0.85,
    .risk = 1.5,
    .summary = "Temporary files your apps saved to load faster.",
    .why =
        "Caches are copies of things apps can download or rebuild. Apps may feel a touch slower the first time you "
        "open them afterwards.",
};
}  // namespace caches

namespace crashes {
constexpr std::chrono::seconds age{604'800};
constexpr std::array<std::string_view, 2> locations = {"Library/Logs/DiagnosticReports",
                                                       "Library/Logs/DiagnosticReports/Retired"};
constexpr const char* entryName = "Crash report";

constexpr CardDescription card = {
    .id = "crash",
    .title = "Old crash reports",
    .symbol = "exclamationmark.bubble",
    .bucket = Bucket::safe,
    .confidence = 0.98,
    .risk = 1.0,
    .summary = "Reports about app crashes from over a week ago.",
    .why = "These are only diagnostic notes. Nothing reads them unless you send them to a developer.",
};
}  // namespace crashes

bool isCacheOffered(std::string_view name) {
    return !startsWithAny(name, caches::skippedPrefixes) && !isAmong(name, caches::skippedNames);
}

const char* cloneName(std::string_view fileName) {
    return lowercased(fileName).find(clones::braveMark) != std::string::npos ? clones::braveName : clones::chromeName;
}

// What lies in the folder of a removed application goes with it.
PlaceFilter butOfRemovedApps(PlaceFilter filter) {
    if (!isOnLinux()) {
        return filter;
    }
    const auto leftovers = std::make_shared<const SandboxedLeftovers>(now());
    return [leftovers, filter = std::move(filter)](const PlacedItem& item) {
        return leftovers->hold(item.path) ? std::nullopt : filter(item);
    };
}

}  // namespace

std::vector<Card> browserClones(Probe& probe) {
    const std::filesystem::path root = world().rooted(clones::root);
    const auto clone = [](const FolderItem& item) {
        return item.name.find(clones::mark) == std::string::npos ? std::nullopt
                                                                 : std::optional(Offer{cloneName(item.name)});
    };
    std::vector<Entry> entries;
    for (const FolderItem& first : childrenOf(root, ListingDetail::kinds)) {
        for (const FolderItem& second : childrenOf(root / first.name, ListingDetail::kinds)) {
            const std::filesystem::path holder = root / first.name / second.name / clones::holder;
            addListed(entries, probe, holder, childrenOf(holder, ListingDetail::kinds), clone);
        }
    }
    return cardOf(clones::card, std::move(entries));
}

std::vector<Card> appCaches(Probe& probe) {
    const auto cache = [](const FolderItem& item) {
        return isCacheOffered(item.name) ? std::optional(Offer{Scanner::pretty(label(item.name))}) : std::nullopt;
    };
    std::vector<Entry> entries = childrenIn(probe, caches::location, ListingDetail::kinds, cache);
    addItemsAt(entries, probe, linuxCaches, butOfRemovedApps([](const PlacedItem&) { return ItemDates{}; }));
    return cardOf(caches::card, std::move(entries));
}

std::vector<Card> oldCrashReports(Probe& probe) {
    const Date cutOff = now() - crashes::age;
    const auto old = [&](const FolderItem& item) -> std::optional<Offer> {
        if (item.isDirectory || !changedBefore(cutOff, item.contentModificationDate)) {
            return std::nullopt;
        }
        return Offer{crashes::entryName, {.modified = item.contentModificationDate, .accessed = {}}};
    };
    std::vector<Entry> entries;
    for (const std::string_view location : crashes::locations) {
        addChildren(entries, probe, Scanner::home() / location, ListingDetail::dates, old);
    }
    addItemsAt(entries, probe, linuxCrashReports, butOfRemovedApps(lastChangedBefore(cutOff)));
    return cardOf(crashes::card, std::move(entries));
}

}  // namespace vesk::rules

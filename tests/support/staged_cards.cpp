#include "support/staged_cards.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "core/probe.h"
#include "core/scanner.h"
#include "platform/world.h"
#include "rules/catalogue.h"

namespace vesk {

namespace {

constexpr std::int64_t gigabyte = 1'000'000'000;
constexpr double confidence = 0.9;
constexpr double daysUnused = 42;

}  // namespace

Entry stagedEntry(const std::string& name, std::int64_t size, OnDisk onDisk) {
    const std::filesystem::path path = Scanner::home() / "Staged" / name;
    if (onDisk == OnDisk::present) {
        std::error_code ignored;
        std::filesystem::create_directories(path.parent_path(), ignored);
        std::ofstream(path) << "staged\n";
    }
    Entry entry;
    entry.url = path;
    entry.name = path.filename().string();
    entry.size = size;
    return entry;
}

Card stagedCard(const std::string& id, Bucket bucket, std::int64_t size, std::size_t entries) {
    Card card;
    card.id = id;
    card.title = bucket == Bucket::safe ? "App caches" : bucket == Bucket::smart ? "Dormant AI models" : "Your films";
    card.symbol = bucket == Bucket::safe ? "internaldrive" : bucket == Bucket::smart ? "brain.head.profile" : "film";
    card.bucket = bucket;
    card.confidence = confidence;
    card.risk = 1;
    card.summary = "Temporary files your apps saved to load faster.";
    card.why =
        "Apps make these again the next time they need them. The first start afterwards may take a little longer.";
    card.dormancyDays = daysUnused;
    card.selected = bucket == Bucket::safe;
    const auto count = static_cast<std::int64_t>(entries);
    for (std::int64_t place = 0; place < count; ++place) {
        // Shares fall evenly: n, n - 1, ... 1 parts of the whole.
        const std::int64_t share = size / (count * (count + 1) / 2) * (count - place);
        card.entries.push_back(stagedEntry(id + "/com.acme.Item" + std::to_string(place + 1), share));
    }
    return card;
}

Card snapshotCard(std::size_t snapshots) {
    Card card;
    card.id = "snapshots";
    card.title = "Time Machine snapshots";
    card.symbol = "clock.arrow.circlepath";
    card.bucket = Bucket::safe;
    card.confidence = confidence;
    card.risk = 1;
    card.summary = "Short-term backup copies your Mac keeps on its own disk.";
    card.why = "Your backups on another disk are not touched. macOS makes new copies by itself.";
    card.dormancyDays = 1;
    card.selected = true;
    for (std::size_t place = 0; place < snapshots; ++place) {
        card.snapshotIDs.push_back("2024-05-0" + std::to_string(place % 9 + 1) + "-101500");
    }
    return card;
}

Spec staged(std::vector<Card> cards) {
    return {"Staged", [cards = std::move(cards)](Probe&) { return cards; }};
}

Spec refused(const std::string& label) {
    return {label, [](Probe& probe) {
                probe.blocked = true;
                return std::vector<Card>();
            }};
}

Spec waiting(std::int64_t bytes, std::shared_ptr<std::latch> released) {
    return {"Waiting", [bytes, released = std::move(released)](Probe& probe) {
                probe.tracker->add({bytes, 1});
                released->wait();
                return std::vector<Card>();
            }};
}

std::vector<Card> foundCards(std::int64_t factor) {
    std::vector<Card> found;
    const auto tracker = std::make_shared<Tracker>();
    for (const Spec& rule : Scanner::specs()) {
        Probe probe(tracker);
        for (Card& card : rule.run(probe)) {
            for (Entry& entry : card.entries) {
                Entry larger;
                larger.url = entry.url;
                larger.name = entry.name;
                larger.size = entry.size * factor;
                larger.lastUsed = entry.lastUsed;
                entry = larger;
            }
            found.push_back(std::move(card));
        }
    }
    return found;
}

Store::Sources sourcesOf(std::vector<Spec> rules, BackupTool tool) {
    Store::Sources sources;
    sources.catalogue = [rules = std::move(rules)] { return rules; };
    sources.volume = [] { return VolumeFigures{500 * gigabyte, 148'300'000'000}; };
    sources.runTool = [tool](const std::string&, const std::vector<std::string>&) {
        return tool == BackupTool::works ? 0 : 1;
    };
    return sources;
}

}  // namespace vesk

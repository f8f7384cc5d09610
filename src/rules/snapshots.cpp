// Local Time Machine snapshots. They are no files: the card carries their stamps, and cleaning has the backup tool
// delete them.

#include <algorithm>
#include <string>
#include <string_view>

#include "platform/date.h"
#include "platform/world.h"
#include "rules/backup_tool.h"
#include "rules/rules.h"
#include "rules/run_tool.h"
#include "rules/snapshot_listing.h"

namespace vesk::rules {

namespace {

constexpr double secondsPerDay = 86'400.0;
// Snapshots come hourly, so one without a readable time is taken as new, not as the usual thirty days old.
constexpr double leastDormancy = 1.0;

constexpr const char* id = "snapshots";
constexpr const char* title = "Local Time Machine snapshots";
constexpr const char* symbol = "clock.arrow.circlepath";
constexpr double confidence = 0.9;
constexpr double risk = 1.5;
constexpr const char* why =
    "Your real backups on the Time Machine disk are untouched. These are extra short-term copies macOS also frees "
    "automatically when space runs low. Note: they can't be put in the Trash, so removing them can't be undone.";

std::string summary(std::size_t count) {
    return std::to_string(count) + " hourly backup " + (count == 1 ? "copy" : "copies") +
           " kept on this Mac (size varies).";
}

double dormancyDays(const std::vector<std::string>& stamps) {
    std::optional<Date> newest;
    for (const std::string& stamp : stamps) {
        newest = std::max(newest, dateOfStamp(stamp));
    }
    return newest ? std::max(leastDormancy, secondsBetween(*newest, now()) / secondsPerDay) : leastDormancy;
}

}  // namespace

std::vector<Card> timeMachineSnapshots(Probe& /*probe*/) {
    const ToolResult listed = runTool(world().rooted(backupTool), {"listlocalsnapshots", "/"});
    std::vector<std::string> stamps = stampsIn(listed.output);
    if (stamps.empty()) {
        return {};
    }
    Card card;
    card.id = id;
    card.title = title;
    card.symbol = symbol;
    card.bucket = Bucket::safe;
    card.confidence = confidence;
    card.risk = risk;
    card.summary = summary(stamps.size());
    card.why = why;
    card.dormancyDays = dormancyDays(stamps);
    card.snapshotIDs = std::move(stamps);
    card.selected = true;
    return {card};
}

}  // namespace vesk::rules

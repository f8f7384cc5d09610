// Local Time Machine snapshots. They are no files: the card carries their stamps, and cleaning has the backup tool
// delete them.

#include <algorithm>
#include <string>
#include <string_view>

#include "core/scanner.h"
#include "platform/date.h"
#include "platform/world.h"
#include "rules/backup_tool.h"
#include "rules/rules.h"
#include "rules/run_tool.h"
#include "rules/snapshot_listing.h"

namespace vesk::rules {

namespace {

constexpr CardDescription snapshotCard = {
    .id = "snapshots",
    .title = "Local Time Machine snapshots",
    .symbol = "clock.arrow.circlepath",
    .bucket = Bucket::safe,
    .confidence = 0.9,
    .risk = 1.5,
    .summary = "",  // tells how many there are
    .why =
        "Your real backups on the Time Machine disk are untouched. These are extra short-term copies macOS also frees "
        "automatically when space runs low. Note: they can't be put in the Trash, so removing them can't be undone.",
};

std::string summary(std::size_t count) {
    return std::to_string(count) + " hourly backup " + (count == 1 ? "copy" : "copies") +
           " kept on this Mac (size varies).";
}

double dormancyDays(const std::vector<std::string>& stamps) {
    std::optional<Date> newest;
    for (const std::string& stamp : stamps) {
        newest = std::max(newest, dateOfStamp(stamp));
    }
    // Snapshots come hourly, so one without a readable time is taken as new, not as the usual thirty days old.
    return Scanner::dormancyDays(newest, leastDormancyDays);
}

}  // namespace

std::vector<Card> timeMachineSnapshots(Probe& /*probe*/) {
    const ToolResult listed = runTool(world().rooted(backupTool), {"listlocalsnapshots", "/"});
    std::vector<std::string> stamps = stampsIn(listed.output);
    if (stamps.empty()) {
        return {};
    }
    Card card = Scanner::emptyCard(snapshotCard);
    card.summary = summary(stamps.size());
    card.dormancyDays = dormancyDays(stamps);
    card.snapshotIDs = std::move(stamps);
    return {card};
}

}  // namespace vesk::rules

// What lies at the top of Downloads and was neither changed nor opened for 60 days.

#include <algorithm>
#include <chrono>
#include <map>
#include <string_view>

#include "core/scanner.h"
#include "platform/files/identity.h"
#include "platform/system/user_folders.h"
#include "platform/system/volume.h"
#include "rules/kept_folders.h"
#include "rules/place_search.h"
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

// Each folder once, of those that lie below the home and are no other folder of the user's.
std::vector<std::filesystem::path> withoutOtherUses(const std::vector<std::filesystem::path>& folders,
                                                    const std::map<std::string, std::filesystem::path>& users) {
    std::vector<std::filesystem::path> left;
    std::vector<std::optional<ItemIdentity>> identities;
    for (const std::filesystem::path& folder : folders) {
        const std::optional<ItemIdentity> identity = folderIdentity(folder);
        const bool hasOtherUse = std::any_of(users.begin(), users.end(), [&](const auto& user) {
            return user.first != "DOWNLOAD" && folderIdentity(user.second) == identity;
        });
        if (identity && !hasOtherUse && isBelowHome(folder) &&
            std::find(identities.begin(), identities.end(), identity) == identities.end()) {
            identities.push_back(identity);
            left.push_back(folder);
        }
    }
    return left;
}

// The folders to look into: on Linux the user's folder for downloads may have any name. None that serves for something
// else as well.
std::vector<std::filesystem::path> downloadFolders() {
    std::vector<std::filesystem::path> folders = {Scanner::home() / downloads};
    if (!isOnLinux()) {
        return folders;
    }
    const std::map<std::string, std::filesystem::path> users = userFolders();
    if (const auto named = users.find("DOWNLOAD"); named != users.end()) {
        folders.push_back(named->second);
    }
    return withoutOtherUses(folders, users);
}

}  // namespace

std::vector<Card> oldDownloads(Probe& probe) {
    const Date cutOff = now() - age;
    const KeptFolders kept;
    std::vector<Entry> entries;
    for (const std::filesystem::path& location : downloadFolders()) {
        const UseDatesKept useDates = isOnLinux() ? useDatesKept(location) : UseDatesKept{};
        addChildren(entries, probe, location, ListingDetail::kinds,
                    [&](const FolderItem& item) -> std::optional<Offer> {
                        const std::optional<ResourceValues> values = resourceValues(location / item.name);
                        // By the item's own two dates, also for a folder.
                        if (!values || !untouchedSince(cutOff, *values) || kept.isAround(location / item.name) ||
                            !(item.isDirectory ? useDates.ofFolders : useDates.ofFiles)) {
                            return std::nullopt;
                        }
                        return Offer{label(item.name), {values->contentModificationDate, values->contentAccessDate}};
                    });
    }
    return cardOf(downloadCard, std::move(entries));
}

}  // namespace vesk::rules

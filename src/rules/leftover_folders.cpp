// Folders of application support that belong to no installed application and lay untouched for 60 days. The match of
// folders and applications is loose on purpose: better to overlook leftovers than to offer what is in use.

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "core/scanner.h"
#include "platform/system/bundle.h"
#include "platform/text.h"
#include "platform/world.h"
#include "rules/rule_support.h"
#include "rules/rules.h"
#include "rules/sandboxed_leftovers.h"

namespace vesk {

namespace {

using namespace rules;

constexpr std::array<std::string_view, 4> applicationFolders = {
    "/Applications", "/Applications/Utilities", "/System/Applications", "/System/Applications/Utilities"};
constexpr std::string_view ownApplications = "Applications";
constexpr std::string_view applicationExtension = "app";
// Shorter tokens would be found in too many names.
constexpr std::size_t shortestToken = 3;

constexpr std::string_view support = "Library/Application Support";
constexpr std::array<std::string_view, 2> skippedPrefixes = {".", "com.apple"};
// clang-format off
constexpr std::array<std::string_view, 27> skippedNames = {
    "Apple", "AddressBook", "CallHistoryDB", "CallHistoryTransactions", "CloudDocs", "Dock",
    "iCloud", "Knowledge", "MobileSync", "SyncServices", "Caches", "CrashReporter", "App Store",
    "Animoji", "FaceTime", "com.apple.TCC", "DifferentialPrivacy", "FileProvider", "CloudKit",
    "Adobe", "Quick Look", "networkserviceproxy", "default.store", "Steam", "Homebrew", "Code",
    "Claude"
};
// clang-format on

constexpr CardDescription leftoverCard = {
    .id = "orphans",
    .title = "Leftovers from apps you removed",
    .symbol = "questionmark.folder",
    .bucket = Bucket::smart,
    .confidence = 0.45,
    .risk = 4.0,
    .summary = "Settings and data from apps that no longer seem to be installed.",
    .why =
        "Vesk can't be certain an app is gone (some live outside Applications), and this may hold saved data like "
        "game progress. Peek inside before choosing.",
};

// What installed applications are recognised by: their normalised names and bundle identifiers.
class InstalledApplications {
public:
    InstalledApplications() {
        for (const std::string_view folder : applicationFolders) {
            addIn(world().rooted(folder));
        }
        addIn(Scanner::home() / ownApplications);
    }

    bool own(const std::string& normalizedName) const {
        return std::any_of(tokens_.begin(), tokens_.end(), [&](const std::string& token) {
            return normalizedName.find(token) != std::string::npos || token.find(normalizedName) != std::string::npos;
        });
    }

private:
    // Applications lie in the folder or in a folder inside it, not deeper, nor inside each other.
    void addIn(const std::filesystem::path& folder) {
        for (const FolderItem& item : childrenOf(folder, ListingDetail::kinds)) {
            const std::filesystem::path path = folder / item.name;
            if (isApplication(item)) {
                add(path);
            } else if (item.isDirectory) {
                for (const FolderItem& inner : childrenOf(path, ListingDetail::kinds)) {
                    if (isApplication(inner)) {
                        add(path / inner.name);
                    }
                }
            }
        }
    }

    static bool isApplication(const FolderItem& item) { return pathExtension(item.name) == applicationExtension; }

    void add(const std::filesystem::path& application) {
        addToken(Scanner::normalize(application.stem().string()));
        if (const std::optional<std::string> identifier = bundleIdentifier(application)) {
            addToken(Scanner::normalize(*identifier));
        }
    }

    void addToken(std::string token) {
        if (characterCount(token) >= shortestToken) {
            tokens_.push_back(std::move(token));
        }
    }

    std::vector<std::string> tokens_;
};

bool isOffered(const std::string& name) {
    return !startsWithAny(name, skippedPrefixes) && !isAmong(name, skippedNames);
}

bool isInstalled(const std::string& name, const InstalledApplications& applications) {
    const std::string normalized = Scanner::normalize(name);
    // A name too short to tell is taken as somebody's.
    return characterCount(normalized) < shortestToken || applications.own(normalized);
}

}  // namespace

std::vector<Card> Scanner::orphanCard(Probe& probe) {
    const Date start = now();
    const Date cutOff = start - leftoverAge;
    const InstalledApplications applications;
    std::vector<Entry> entries =
        childrenIn(probe, support, ListingDetail::dates, [&](const FolderItem& item) -> std::optional<Offer> {
            if (!isOffered(item.name) || !item.isDirectory || isInstalled(item.name, applications) ||
                !changedBefore(cutOff, item.contentModificationDate)) {
                return std::nullopt;
            }
            return Offer{pretty(label(item.name)), {.modified = item.contentModificationDate, .accessed = {}}};
        });
    // Of other programs on Linux nothing tells surely whether they are still there.
    if (isOnLinux()) {
        SandboxedLeftovers(start).addTo(entries, probe);
    }
    // Something newer inside shows that the folder is in use.
    std::erase_if(entries, [&](const Entry& entry) { return entry.lastUsed.value_or(Date::min()) >= cutOff; });
    return cardOf(leftoverCard, std::move(entries));
}

}  // namespace vesk

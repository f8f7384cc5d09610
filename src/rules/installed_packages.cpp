#include "rules/installed_packages.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>

#include "platform/files/files.h"
#include "platform/files/reading.h"
#include "platform/system/key_file.h"
#include "platform/world.h"

namespace vesk::rules {

namespace {

constexpr std::string_view systemInstallation = "/var/lib/flatpak";
constexpr std::string_view configuredInstallations = "/etc/flatpak/installations.d";
constexpr std::array<std::string_view, 2> mountedSnaps = {"/snap", "/var/lib/snapd/snap"};
constexpr std::string_view snapFiles = "/var/lib/snapd/snaps";
constexpr std::int64_t largestKeyFile = 1'000'000;

// The children of a folder; none of one that is missing. Absent when it cannot be told.
std::optional<std::vector<FolderItem>> childrenIfKnown(const std::filesystem::path& folder) {
    FolderListing listing = listFolder(folder, ListingDetail::kinds);
    if (listing.error && listing.error->code != ENOENT) {
        return std::nullopt;
    }
    return std::move(listing.items);
}

}  // namespace

InstalledFlatpaks::InstalledFlatpaks() {
    addInstallation(world().dataHome / "flatpak", false);
    addInstallation(world().home / ".local/share/flatpak", false);
    addInstallation(world().rooted(systemInstallation), false);
    for (const char* variable : {"FLATPAK_USER_DIR", "FLATPAK_SYSTEM_DIR"}) {
        const auto [first, last] = world().variableFolders.equal_range(variable);
        std::for_each(first, last, [&](const auto& named) { addInstallation(named.second, true); });
    }
    addConfigured();
    addRunning();
}

void InstalledFlatpaks::addInstallation(const std::filesystem::path& folder, bool mustBeThere) {
    const auto applications = childrenIfKnown(folder / "app");
    known_ = known_ && applications && (!mustBeThere || itemExists(folder));
    for (const FolderItem& item : applications.value_or(std::vector<FolderItem>())) {
        identifiers_.insert(item.name);
    }
}

void InstalledFlatpaks::addConfigured() {
    const std::filesystem::path folder = world().rooted(configuredInstallations);
    const auto files = childrenIfKnown(folder);
    known_ = known_ && files;
    for (const FolderItem& item : files.value_or(std::vector<FolderItem>())) {
        if (!item.name.ends_with(".conf")) {
            continue;
        }
        const auto text = readWithoutTrace(folder / item.name, largestKeyFile);
        known_ = known_ && text;
        for (const KeyFileLine& line : keyFileLines(text.value_or(""))) {
            if (line.group.starts_with("Installation ") && line.key == "Path") {
                addInstallation(world().rooted(line.value), true);
            }
        }
    }
}

// A program that runs from an installation which has meanwhile gone, or was never configured here.
void InstalledFlatpaks::addRunning() {
    if (world().runtimeHome.empty()) {
        return;
    }
    const std::filesystem::path instances = world().runtimeHome / ".flatpak";
    const auto found = childrenIfKnown(instances);
    known_ = known_ && found;
    for (const FolderItem& instance : found.value_or(std::vector<FolderItem>())) {
        const std::filesystem::path information = instances / instance.name / "info";
        if (!instance.isDirectory || !resourceValues(information)) {
            continue;
        }
        const auto text = readWithoutTrace(information, largestKeyFile);
        known_ = known_ && text;
        identifiers_.insert(keyFileValue(text.value_or(""), "Application", "name").value_or(""));
    }
}

InstalledSnaps::InstalledSnaps() {
    for (const std::string_view place : mountedSnaps) {
        const auto mounted = childrenIfKnown(world().rooted(place));
        known_ = known_ && mounted;
        for (const FolderItem& item : mounted.value_or(std::vector<FolderItem>())) {
            names_.insert(item.name);
        }
    }
    const auto files = childrenIfKnown(world().rooted(snapFiles));
    known_ = known_ && files;
    for (const FolderItem& item : files.value_or(std::vector<FolderItem>())) {
        files_.push_back(item.name);
    }
}

bool InstalledSnaps::contains(const std::string& name) const {
    return names_.contains(name) || std::any_of(files_.begin(), files_.end(), [&](const std::string& file) {
               return file.starts_with(name + "_") && file.ends_with(".snap");
           });
}

bool isSnapName(std::string_view name) {
    constexpr std::size_t longestKey = 10;
    const auto isLetterOrDigit = [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); };
    const std::size_t underscore = name.find('_');
    const std::string_view snap = name.substr(0, underscore);
    if (snap.empty() ||
        !std::all_of(snap.begin(), snap.end(), [&](char c) { return isLetterOrDigit(c) || c == '-'; })) {
        return false;
    }
    if (underscore == std::string_view::npos) {
        return true;
    }
    const std::string_view key = name.substr(underscore + 1);
    return !key.empty() && key.size() <= longestKey && std::all_of(key.begin(), key.end(), isLetterOrDigit);
}

}  // namespace vesk::rules

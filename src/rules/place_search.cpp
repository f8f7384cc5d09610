#include "rules/place_search.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <map>
#include <utility>

#include "platform/files/files.h"
#include "platform/files/identity.h"
#include "platform/files/reading.h"
#include "platform/system/folder_variables.h"
#include "platform/system/key_file.h"
#include "platform/system/user_folders.h"
#include "platform/text.h"
#include "platform/world.h"
#include "rules/rule_support.h"

namespace vesk::rules {

namespace {

namespace fs = std::filesystem;

using FileNumber = std::pair<std::uint64_t, std::uint64_t>;

constexpr std::string_view lmStudioPointer = ".lmstudio-home-pointer";
constexpr std::int64_t largestPointer = 100'000;
constexpr std::int64_t largestDesktopFile = 1'000'000;
constexpr std::array<std::string_view, 4> sharedApplications = {
    "/usr/share/applications", "/usr/local/share/applications", "/var/lib/flatpak/exports/share/applications",
    "/var/lib/snapd/desktop/applications"};

std::optional<FileNumber> numberOf(const std::optional<ItemIdentity>& identity) {
    return identity ? std::optional(FileNumber(identity->device, identity->inode)) : std::nullopt;
}

// Device and inode of an item, or of the target if it is a link.
std::optional<FileNumber> fileNumber(const fs::path& item) {
    const std::optional<ItemIdentity> identity = itemIdentity(item);
    if (identity && identity->type == FileType::link) {
        const std::optional<fs::path> target = followLink(item);
        return target ? numberOf(itemIdentity(*target)) : std::nullopt;
    }
    return numberOf(identity);
}

// The texts that a part with "{a,b}" stands for; the part itself if it has no braces.
std::vector<std::string> alternatives(std::string_view part) {
    const std::size_t open = part.find('{');
    const std::size_t close = part.find('}', open == std::string_view::npos ? 0 : open);
    if (open == std::string_view::npos || close == std::string_view::npos) {
        return {std::string(part)};
    }
    std::vector<std::string> all;
    std::string_view inside = part.substr(open + 1, close - open - 1);
    while (true) {
        const std::size_t comma = std::min(inside.find(','), inside.size());
        all.push_back(std::string(part.substr(0, open)) + std::string(inside.substr(0, comma)) +
                      std::string(part.substr(close + 1)));
        if (comma == inside.size()) {
            return all;
        }
        inside.remove_prefix(comma + 1);
    }
}

bool hasStar(std::string_view part) {
    return part.find('*') != std::string_view::npos;
}

bool matches(std::string_view name, std::string_view pattern) {
    const std::size_t star = pattern.find('*');
    if (star == std::string_view::npos) {
        return name == pattern;
    }
    const std::string_view before = pattern.substr(0, star);
    const std::string_view after = pattern.substr(star + 1);
    return name.size() >= before.size() + after.size() && name.starts_with(before) && name.ends_with(after) &&
           !(before.empty() && name.starts_with('.'));
}

// No pattern has a slash between braces.
std::vector<std::string_view> partsOf(std::string_view pattern) {
    std::vector<std::string_view> parts;
    while (!pattern.empty()) {
        const std::size_t slash = std::min(pattern.find('/'), pattern.size());
        parts.push_back(pattern.substr(0, slash));
        pattern.remove_prefix(std::min(slash + 1, pattern.size()));
    }
    return parts;
}

// Whether anything matches; a bare "*" matches hidden items too. What cannot be listed counts as a match.
bool holdsAny(const fs::path& folder, std::span<const std::string_view> parts) {
    if (parts.empty()) {
        return resourceValues(folder).has_value();
    }
    if (!hasStar(parts.front())) {
        return holdsAny(folder / parts.front(), parts.subspan(1));
    }
    const FolderListing listing = listFolder(folder, ListingDetail::kinds);
    if (listing.error) {
        return Probe::isPermission(*listing.error);
    }
    return std::any_of(listing.items.begin(), listing.items.end(), [&](const FolderItem& item) {
        const bool fits = parts.front() == "*" || matches(item.name, parts.front());
        return fits && holdsAny(folder / item.name, parts.subspan(1));
    });
}

// The name that a launcher shows for the application with this desktop file; the file's name if it has none.
std::string applicationName(const std::string& application) {
    std::vector<fs::path> folders;
    for (const fs::path& data : startsOf("DATA")) {
        folders.push_back(data / "applications");
        folders.push_back(data / "flatpak/exports/share/applications");
    }
    std::transform(sharedApplications.begin(), sharedApplications.end(), std::back_inserter(folders),
                   [](std::string_view folder) { return world().rooted(folder); });
    for (const fs::path& folder : folders) {
        if (const auto text = readWithoutTrace(folder / (application + ".desktop"), largestDesktopFile)) {
            const auto name = keyFileValue(*text, "Desktop Entry", "Name");
            if (name && !name->empty()) {
                return label(*name);
            }
        }
    }
    return label(application);
}

// Collects everything that matches the places of a table, including what is left out later.
class PlaceSearch {
public:
    explicit PlaceSearch(Probe& probe) : probe_(probe) {}

    void add(const LinuxPlace& place) {
        const std::vector<std::string_view> parts = partsOf(place.pattern);
        for (const fs::path& start : startsOf(parts.front())) {
            search(place, start, std::span(parts).subspan(1), "");
        }
    }

    std::vector<PlacedItem> found;

private:
    void search(const LinuxPlace& place, const fs::path& folder, std::span<const std::string_view> parts,
                const std::string& application) {
        if (parts.empty()) {
            take(place, folder, application.empty() ? folder.filename().string() : application);
            return;
        }
        const std::vector<std::string> wanted = alternatives(parts.front());
        std::vector<FolderItem> children;
        if (std::any_of(wanted.begin(), wanted.end(), hasStar)) {
            children = childrenOrBlocked(probe_, folder, ListingDetail::kinds);
        }
        for (const std::string& pattern : wanted) {
            if (!hasStar(pattern)) {
                search(place, folder / pattern, parts.subspan(1), application);
                continue;
            }
            for (const FolderItem& item : children) {
                if (matches(item.name, pattern) && (parts.size() == 1 || item.isDirectory)) {
                    search(place, folder / item.name, parts.subspan(1), application.empty() ? item.name : application);
                }
            }
        }
    }

    void take(const LinuxPlace& place, const fs::path& item, const std::string& application) {
        const std::optional<ResourceValues> values = resourceValues(item);
        if (!values || !isTaken(place.taken, *values) || isLeft(place, item)) {
            return;
        }
        const bool isPlain = place.taken == Taken::plainFolders;  // seen when it is measured
        found.push_back({item, place.name, application, isPlain ? Probe::Contents::plain : Probe::Contents::any});
    }

    static bool isTaken(Taken taken, const ResourceValues& values) {
        switch (taken) {
            case Taken::anything:
                return true;
            case Taken::folders:
            case Taken::plainFolders:
                return values.isDirectory;
            case Taken::files:
                return !values.isDirectory;
        }
        return false;
    }

    static bool isLeft(const LinuxPlace& place, const fs::path& item) {
        // Resolves "../" by the path: the item may be a link.
        fs::path folder = item;
        std::string_view besides = place.besides;
        while (besides.starts_with("../")) {
            folder = folder.parent_path();
            besides.remove_prefix(3);
        }
        return (!besides.empty() && !itemExists(folder / besides)) ||
               (!place.unless.empty() && holdsAny(item, partsOf(place.unless)));
    }

    Probe& probe_;
};

// Decides which items to leave out: duplicates, items inside others, and folders that hold more than one program's
// files.
class Overlaps {
public:
    explicit Overlaps(const std::vector<PlacedItem>& found) {
        for (const fs::path& kept : {world().home, world().cacheHome, world().configHome, world().dataHome}) {
            keep(kept);
        }
        for (const auto& [name, folder] : userFolders()) {
            keep(folder);
        }
        for (const PlacedItem& each : found) {
            numbers_.push_back(fileNumber(each.path));
            if (numbers_.back()) {
                all_.insert(*numbers_.back());
            }
        }
        // Between a link and its target, the target is offered.
        for (const bool links : {false, true}) {
            for (std::size_t i = 0; i < found.size(); ++i) {
                const std::optional<ResourceValues> values = resourceValues(found[i].path);
                if (numbers_[i] && values && values->isSymbolicLink == links) {
                    firsts_.emplace(*numbers_[i], i);
                }
            }
        }
    }

    bool leaveOut(std::size_t index, const fs::path& path) {
        const std::optional<FileNumber>& number = numbers_[index];
        return !number || kept_.contains(*number) || firsts_.at(*number) != index || liesInAnother(path);
    }

private:
    // Keeps the folder and everything above it.
    void keep(const fs::path& folder) {
        for (fs::path above = folder; above.has_relative_path(); above = above.parent_path()) {
            if (const std::optional<FileNumber> number = numberOfFolder(above)) {
                kept_.insert(*number);
            }
        }
    }

    bool liesInAnother(const fs::path& path) {
        for (fs::path above = path.parent_path(); liesBelow(above, world().home); above = above.parent_path()) {
            const std::optional<FileNumber> number = numberOfFolder(above);
            if (number && all_.contains(*number)) {
                return true;
            }
        }
        return false;
    }

    std::optional<FileNumber> numberOfFolder(const fs::path& folder) {
        const auto [place, isNew] = folders_.try_emplace(folder);
        if (isNew) {
            place->second = fileNumber(folder);
        }
        return place->second;
    }

    std::map<fs::path, std::optional<FileNumber>> folders_;
    std::set<FileNumber> kept_;
    std::vector<std::optional<FileNumber>> numbers_;
    std::set<FileNumber> all_;
    std::map<FileNumber, std::size_t> firsts_;
};

std::vector<PlacedItem> withoutOverlaps(std::vector<PlacedItem> found) {
    Overlaps overlaps(found);
    std::vector<PlacedItem> items;
    for (std::size_t i = 0; i < found.size(); ++i) {
        if (!overlaps.leaveOut(i, found[i].path)) {
            items.push_back(std::move(found[i]));
        }
    }
    return items;
}

void addEntries(std::vector<Entry>& entries, Probe& probe, const std::vector<PlacedItem>& items,
                const PlaceFilter& filter) {
    std::map<std::string, std::string> names;
    for (const PlacedItem& item : items) {
        const std::optional<ItemDates> judgedBy = filter(item);
        if (!judgedBy) {
            continue;
        }
        if (item.name.empty() && !names.contains(item.application)) {
            names[item.application] = applicationName(item.application);
        }
        std::string name = item.name.empty() ? names[item.application] : std::string(item.name);
        if (std::optional<Entry> entry = probe.entry(item.path, std::move(name), item.contents)) {
            if (judgedBy->modified || judgedBy->accessed) {
                probe.judgedBy[entry->url] = *judgedBy;
            }
            entries.push_back(*std::move(entry));
        }
    }
}

}  // namespace

bool isOnLinux() {
    return world().layout == Layout::linuxDesktop;
}

bool liesBelow(const fs::path& path, const fs::path& folder) {
    const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
    return end == folder.end() && rest != path.end();
}

bool isBelowHome(const fs::path& path) {
    return liesBelow(path.lexically_normal(), world().home.lexically_normal());
}

std::vector<fs::path> startsOf(std::string_view start) {
    const World& here = world();
    std::vector<fs::path> starts;
    if (start == "~") {
        return {here.home};
    }
    // A variable set in a shell's settings does not reach programs that the desktop starts, so the default counts too.
    if (start == "CACHE") {
        starts = {here.cacheHome, here.home / ".cache"};
    } else if (start == "CONFIG") {
        starts = {here.configHome, here.home / ".config"};
    } else if (start == "DATA") {
        starts = {here.dataHome, here.home / ".local/share"};
    } else if (start == "LMSTUDIO") {
        const auto pointer = readWithoutTrace(here.home / lmStudioPointer, largestPointer);
        starts = {folderOfSetting(trimmed(pointer.value_or(""), " \t\r\n"), here.home)};
    } else if (start.starts_with('$')) {
        const auto [first, last] = here.variableFolders.equal_range(std::string(start.substr(1)));
        std::transform(first, last, std::back_inserter(starts), [](const auto& variable) { return variable.second; });
    }
    const std::optional<FileNumber> homeNumber = fileNumber(here.home);
    std::vector<fs::path> distinct;
    for (const fs::path& each : starts) {
        const fs::path folder = each.lexically_normal();
        if (isBelowHome(folder) && fileNumber(folder) != homeNumber &&
            std::find(distinct.begin(), distinct.end(), folder) == distinct.end()) {
            distinct.push_back(folder);
        }
    }
    return distinct;
}

std::vector<PlacedItem> itemsAt(Probe& probe, std::span<const LinuxPlace> places) {
    if (!isOnLinux()) {
        return {};
    }
    PlaceSearch search(probe);
    for (const LinuxPlace& place : places) {
        search.add(place);
    }
    return withoutOverlaps(std::move(search.found));
}

void addItemsAt(std::vector<Entry>& entries, Probe& probe, std::span<const LinuxPlace> places,
                const PlaceFilter& filter) {
    addEntries(entries, probe, itemsAt(probe, places), filter);
}

PlaceFilter lastChangedBefore(Date cutOff) {
    return [cutOff](const PlacedItem& item) -> std::optional<ItemDates> {
        const std::optional<ResourceValues> values = resourceValues(item.path);
        if (!values || !changedBefore(cutOff, values->contentModificationDate)) {
            return std::nullopt;
        }
        return ItemDates{.modified = values->contentModificationDate, .accessed = {}};
    };
}

std::vector<Entry> entriesAt(Probe& probe, std::span<const FixedLocation> mac, std::span<const LinuxPlace> onLinux) {
    if (!isOnLinux()) {
        return Scanner::fixed(probe, mac);
    }
    std::vector<std::string> patterns;
    patterns.reserve(mac.size());  // the places point into it
    std::vector<LinuxPlace> places;
    for (const FixedLocation& location : mac) {
        if (!isAmong(location.path, narrowedOnLinux)) {
            patterns.push_back("~/" + std::string(location.path));
            places.push_back({patterns.back(), location.name});
        }
    }
    places.insert(places.end(), onLinux.begin(), onLinux.end());
    std::vector<Entry> entries;
    addItemsAt(entries, probe, places);
    return entries;
}

}  // namespace vesk::rules

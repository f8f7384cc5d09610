// The measuring object of a rule: walks a file or folder, adds up what its regular files take on disk, finds the
// newest use inside, and notes when it was denied permission. Each rule of a scan has a probe of its own on the scan's
// tracker; a probe is used by one thread (its walks use all cores by themselves).
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "core/entry.h"
#include "core/tracker.h"
#include "platform/error.h"
#include "platform/files/files.h"
#include "platform/files/resource_values.h"

namespace vesk {

class Probe {
public:
    struct Measurement {
        /// Bytes on disk of all regular files.
        std::int64_t size = 0;
        /// The newest use date; absent when none was readable.
        std::optional<Date> newest;
        friend bool operator==(const Measurement&, const Measurement&) = default;
    };

    explicit Probe(std::shared_ptr<Tracker> fed) : tracker(std::move(fed)) {}

    /// The values asked of every item, in order.
    static const std::array<std::string_view, 5> keys;
    /// The same as a set.
    static const std::set<std::string_view> keySet;

    /// Whether an error means that reading was denied for lack of permission, itself or anywhere beneath it.
    static bool isPermission(const PlatformError& error);

    /// Bytes on disk of a file with these values: the total figure if there is one, else the plain one, else 0.
    static std::int64_t allocatedSize(const ResourceValues& values);
    /// When a file with these values was last used: its access date, else its modification date, else absent.
    static std::optional<Date> useDate(const ResourceValues& values);

    /// Measures a file, or everything below a folder (a link is followed when it is `url` itself, not when it is met
    /// on the way). Nothing for an item that is missing or may not be looked at, and for a folder at which a file
    /// system is mounted. Unreadable items below are passed over; a denial among them sets `blocked`. Each name of a
    /// hard-linked file counts.
    Measurement measure(const std::filesystem::path& url);

    /// A new entry for an existing item, measured; absent when nothing exists there (a dangling link does not exist).
    std::optional<Entry> entry(const std::filesystem::path& url, std::string name);

    /// The counters this probe feeds.
    const std::shared_ptr<Tracker> tracker;
    /// Set to true, and never back, when this probe's walks or the rule using it was denied permission.
    bool blocked = false;
    /// The own dates of the items that the rule offers for their age, as it saw them: a clean leaves alone what has
    /// become newer since.
    std::map<std::filesystem::path, ItemDates> judgedBy;

private:
    /// Absent when nothing exists there.
    std::optional<Measurement> measureExisting(const std::filesystem::path& url);
    Measurement measureFile(const ResourceValues& values);
    Measurement measureFolder(const std::filesystem::path& folder);

    // A rule follows all its links at the price of the first.
    std::shared_ptr<const void> followsLinks_ = readyToFollowLinks();
};

}  // namespace vesk

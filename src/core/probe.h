// Measures files and folders for a rule: adds up what regular files take on disk, finds the newest use date, and notes
// denied permissions. Each rule of a scan has its own probe, which feeds the scan's tracker. A probe is used by one
// thread (its walks use all cores).
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
        /// The newest use date; absent if none was readable.
        std::optional<Date> newest;
        friend bool operator==(const Measurement&, const Measurement&) = default;
    };

    /// Which items a rule takes by what is in them.
    enum class Contents {
        any,
        /// Only files, folders and links: a socket, a pipe, a device or a mount means that the item is in use.
        plain,
    };

    explicit Probe(std::shared_ptr<Tracker> fed) : tracker(std::move(fed)) {}

    /// The values read for every item, in order.
    static const std::array<std::string_view, 5> keys;
    /// The same as a set.
    static const std::set<std::string_view> keySet;

    /// Whether an error, or any error underlying it, means that permission was denied.
    static bool isPermission(const PlatformError& error);

    /// Bytes on disk of a file with these values: the total size, else the data's size, else 0.
    static std::int64_t allocatedSize(const ResourceValues& values);
    /// When a file with these values was last used: its access date, else its modification date, else absent.
    static std::optional<Date> useDate(const ResourceValues& values);

    /// Measures a file, or everything below a folder. Follows a link if it is `url` itself, but none below. Returns
    /// zero for an item that is missing or cannot be statted, and for a mount point. Skips unreadable items; a denied
    /// permission sets `blocked`. Counts each name of a hard-linked file.
    Measurement measure(const std::filesystem::path& url);

    /// A new, measured entry for an existing item; absent if nothing exists there (a dangling link does not exist). If
    /// its contents are to be plain, absent as well if they are not, or if a part of them cannot be read, which sets
    /// `blocked`; the tracker counts only what is taken.
    std::optional<Entry> entry(const std::filesystem::path& url, std::string name, Contents contents = Contents::any);

    /// The counters that this probe feeds.
    const std::shared_ptr<Tracker> tracker;
    /// Set to true, and never reset, when this probe or its rule was denied permission.
    bool blocked = false;
    /// The dates of the items that the rule offers for their age, as it saw them: a clean does not move what has become
    /// newer since.
    std::map<std::filesystem::path, ItemDates> judgedBy;

private:
    /// Absent if nothing exists there, or not with such contents.
    std::optional<Measurement> measureExisting(const std::filesystem::path& url, Contents contents);
    Measurement measureFile(const ResourceValues& values);
    std::optional<Measurement> measureFolder(const std::filesystem::path& folder, Contents contents);

    // Makes following the rule's later links cheap.
    std::shared_ptr<const void> followsLinks_ = readyToFollowLinks();
};

}  // namespace vesk

#include "core/probe.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <deque>
#include <functional>
#include <utility>

#include "core/checked_sum.h"
#include "platform/files/files.h"
#include "platform/files/tree_walk.h"

namespace vesk {

namespace {

constexpr std::int64_t cocoaFileReadNoPermission = 257;
constexpr std::int64_t cocoaFileWriteNoPermission = 513;
constexpr std::int64_t posixNotPermitted = 1;
constexpr std::int64_t posixPermissionDenied = 13;

// Files measured between two updates of the tracker.
constexpr std::int64_t batch = 256;

// What one thread of a walk has added up. Each thread has its own, so that no file costs a lock, and on cache lines of
// its own, so that none waits for another's.
struct alignas(128) Tally {
    std::int64_t total = 0;
    std::optional<Date> newest;
    Tracker::Counts pending;

    void add(const ResourceValues& values) {
        const std::int64_t size = Probe::allocatedSize(values);
        checkedAdd(total, size);
        checkedAdd(pending.bytes, size);
        ++pending.files;
        const std::optional<Date> used = Probe::useDate(values);
        if (used > newest) {
            newest = used;
        }
    }
};

}  // namespace

const std::array<std::string_view, 5> Probe::keys = {"totalFileAllocatedSize", "fileAllocatedSize", "isRegularFile",
                                                     "contentAccessDate", "contentModificationDate"};

const std::set<std::string_view> Probe::keySet(keys.begin(), keys.end());

bool Probe::isPermission(const PlatformError& error) {
    for (const PlatformError* e = &error; e != nullptr; e = e->underlying.get()) {
        if (e->domain == cocoaErrorDomain &&
            (e->code == cocoaFileReadNoPermission || e->code == cocoaFileWriteNoPermission)) {
            return true;
        }
        if (e->domain == posixErrorDomain && (e->code == posixNotPermitted || e->code == posixPermissionDenied)) {
            return true;
        }
    }
    return false;
}

std::int64_t Probe::allocatedSize(const ResourceValues& values) {
    return values.totalFileAllocatedSize.value_or(values.fileAllocatedSize.value_or(0));
}

std::optional<Date> Probe::useDate(const ResourceValues& values) {
    return values.contentAccessDate ? values.contentAccessDate : values.contentModificationDate;
}

Probe::Measurement Probe::measure(const std::filesystem::path& url) {
    return measureExisting(url, Contents::any).value_or(Measurement{});
}

std::optional<Probe::Measurement> Probe::measureExisting(const std::filesystem::path& url, Contents contents) {
    const std::optional<ResourceValues> values = resourceValues(url);
    if (!values) {
        return std::nullopt;
    }
    if (values->isRegularFile) {
        return measureFile(*values);
    }
    if (!values->isSymbolicLink) {
        // What is mounted below a folder is not part of it, and no Trash could take it.
        if (!isMountPoint(url)) {
            return measureFolder(url, contents);
        }
        return contents == Contents::any ? std::optional(Measurement{}) : std::nullopt;
    }
    const std::optional<std::filesystem::path> target = followLink(url);
    return target ? measureFolder(*target, contents) : std::nullopt;
}

Probe::Measurement Probe::measureFile(const ResourceValues& values) {
    const std::int64_t size = allocatedSize(values);
    tracker->add({size, 1});
    return {size, useDate(values)};
}

std::optional<Probe::Measurement> Probe::measureFolder(const std::filesystem::path& folder, Contents contents) {
    const bool wantsPlain = contents == Contents::plain;
    std::deque<Tally> tallies;  // a deque: visitors keep pointers into it while it grows
    const auto makeVisitor = [&]() -> FileVisitor {
        Tally* tally = &tallies.emplace_back();
        return [this, tally, wantsPlain](const ResourceValues& values) {
            tally->add(values);
            if (tally->pending.files >= batch && !wantsPlain) {
                tracker->add(std::exchange(tally->pending, {}));
            }
        };
    };
    std::atomic<bool> denied = false;
    std::atomic<bool> special = false;
    const auto onError = [&](const PlatformError& error) {
        const bool isMount = error.code == EXDEV;
        const bool hasVanished = error.code == ENOENT || error.code == ENOTDIR || error.code == ELOOP;
        if (isPermission(error) || (wantsPlain && !isMount && !hasVanished)) {
            denied.store(true, std::memory_order_relaxed);
        }
        if (isMount) {
            special.store(true, std::memory_order_relaxed);
        }
    };
    std::function<void()> onSpecial;
    if (wantsPlain) {
        onSpecial = [&] { special.store(true, std::memory_order_relaxed); };
    }

    const bool opened = walkTree(folder, makeVisitor, onError, onSpecial);
    blocked = blocked || denied.load();
    if (wantsPlain && (!opened || special.load() || denied.load())) {
        return std::nullopt;
    }
    if (!opened) {
        return Measurement{};
    }

    Measurement result;
    Tracker::Counts rest;
    for (const Tally& tally : tallies) {
        checkedAdd(result.size, tally.total);
        result.newest = std::max(result.newest, tally.newest);
        checkedAdd(rest.bytes, tally.pending.bytes);
        checkedAdd(rest.files, tally.pending.files);
    }
    tracker->add(rest);
    return result;
}

std::optional<Entry> Probe::entry(const std::filesystem::path& url, std::string name, Contents contents) {
    const std::optional<Measurement> measured = measureExisting(url, contents);
    if (!measured) {
        return std::nullopt;
    }
    return Entry{Uuid::random(), url, std::move(name), measured->size, measured->newest};
}

}  // namespace vesk

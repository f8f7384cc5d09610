// The folders of Flatpaks and snaps that are no longer installed. "Leftovers from apps you removed" offers them whole;
// the other rules skip what lies in them.
#pragma once

#include <chrono>
#include <filesystem>

#include "rules/installed_packages.h"
#include "rules/place_search.h"

namespace vesk::rules {

/// How long the folder of a removed application must have been unchanged.
inline constexpr std::chrono::seconds leftoverAge{5'184'000};

/// Looks once at what is installed, when it is constructed. Used by one thread.
class SandboxedLeftovers {
public:
    explicit SandboxedLeftovers(Date now) : cutOff_(now - leftoverAge) {}

    /// Appends the folders whose own date is before the cut-off, even if something inside is newer.
    void addTo(std::vector<Entry>& entries, Probe& probe) const;

    /// Whether an item is such a folder or lies in one.
    bool hold(const std::filesystem::path& item) const;

private:
    bool isRemovedFlatpak(const std::filesystem::path& folder) const;
    bool isRemovedSnap(const std::filesystem::path& folder) const;

    Date cutOff_;
    InstalledFlatpaks flatpaks_;
    InstalledSnaps snaps_;
};

}  // namespace vesk::rules

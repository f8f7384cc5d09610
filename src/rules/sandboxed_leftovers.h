// The folders of Flatpaks and snaps that are installed no more. "Leftovers from apps you removed" offers them whole,
// and other rules leave alone what lies in them.
#pragma once

#include <chrono>
#include <filesystem>

#include "rules/installed_packages.h"
#include "rules/place_search.h"

namespace vesk::rules {

/// How long the folder of a removed application has to have lain untouched.
inline constexpr std::chrono::seconds leftoverAge{5'184'000};

/// Looks once at what is installed, when it is made.
class SandboxedLeftovers {
public:
    explicit SandboxedLeftovers(Date now) : cutOff_(now - leftoverAge) {}

    /// Appends the folders that were last changed before the cut-off; those with something newer inside too.
    void addTo(std::vector<Entry>& entries, Probe& probe) const;

    /// Whether an item lies in such a folder.
    bool hold(const std::filesystem::path& item) const;

private:
    bool isRemovedFlatpak(const std::filesystem::path& folder) const;
    bool isRemovedSnap(const std::filesystem::path& folder) const;

    Date cutOff_;
    InstalledFlatpaks flatpaks_;
    InstalledSnaps snaps_;
};

}  // namespace vesk::rules

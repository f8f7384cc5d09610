// Which Flatpaks and snaps are installed: the folders of all others are leftovers. Each object looks once, when it is
// constructed. For rules/sandboxed_leftovers.h, on a rule's thread.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::rules {

/// The applications in all of this computer's Flatpak installations, and those running now.
class InstalledFlatpaks {
public:
    InstalledFlatpaks();

    /// False if an installation is missing (it may be on a card that is not inserted) or cannot be read.
    bool areKnown() const { return known_; }
    bool contains(const std::string& identifier) const { return identifiers_.contains(identifier); }

private:
    void addInstallation(const std::filesystem::path& folder, bool mustBeThere);
    void addConfigured();
    void addRunning();

    bool known_ = true;
    std::set<std::string> identifiers_;
};

/// This computer's snaps, with the names of their instances.
class InstalledSnaps {
public:
    InstalledSnaps();

    /// False if one of the folders that hold snaps cannot be read.
    bool areKnown() const { return known_; }
    bool contains(const std::string& name) const;

private:
    bool known_ = true;
    std::set<std::string> names_;
    std::vector<std::string> files_;
};

/// Whether a text is a valid name of a snap or of an instance of one.
bool isSnapName(std::string_view name);

}  // namespace vesk::rules

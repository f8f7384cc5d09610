// Which Flatpaks and snaps are installed, so that the folders of others can be told for leftovers. Each object looks
// once, when it is made.
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::rules {

/// The applications of all Flatpak installations of this computer, and those that run from one at the moment.
class InstalledFlatpaks {
public:
    InstalledFlatpaks();

    /// False when an installation is missing (on a card that is not inserted) or cannot be read: then nobody knows.
    bool areKnown() const { return known_; }
    bool contains(const std::string& identifier) const { return identifiers_.contains(identifier); }

private:
    void addInstallation(const std::filesystem::path& folder, bool mustBeThere);
    void addConfigured();
    void addRunning();

    bool known_ = true;
    std::set<std::string> identifiers_;
};

/// The snaps of this computer, each with the names of its instances.
class InstalledSnaps {
public:
    InstalledSnaps();

    /// False when one of their folders cannot be read.
    bool areKnown() const { return known_; }
    bool contains(const std::string& name) const;

private:
    bool known_ = true;
    std::set<std::string> names_;
    std::vector<std::string> files_;
};

/// Whether a text is the name that a snap, or an instance of one, can have.
bool isSnapName(std::string_view name);

}  // namespace vesk::rules

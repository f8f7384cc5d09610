// What tests of rules in a made-up Linux home share.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "rules/rule_test.h"
#include "rules/rules.h"

namespace vesk::testing {

class LinuxRuleTest : public RuleTest {
protected:
    LinuxRuleTest() { showLinux(); }
    ~LinuxRuleTest() override { setWorld(World::below(testRoot(), testHome())); }

    static World linuxWorld() { return World::below(testRoot(), testHome(), Layout::linuxDesktop); }

    static void showLinux() { setWorld(linuxWorld()); }

    static void showMac() { setWorld(World::below(testRoot(), testHome())); }

    /// Sets variables that name folders, as far as Vesk reads them.
    static void setVariables(const std::vector<std::pair<std::string, std::filesystem::path>>& variables) {
        World wanted = linuxWorld();
        wanted.variableFolders = {variables.begin(), variables.end()};
        setWorld(wanted);
    }

    static void makeUserFolders(std::string_view lines) { writeFile(testHome() / ".config/user-dirs.dirs", lines); }

    /// Makes a file of one block at each of these places of the home.
    static void make(const std::vector<std::string>& paths) {
        for (const std::string& path : paths) {
            makeFile(testHome() / path);
        }
    }

    /// Gives everything in the made-up world these dates.
    static void makeAllOld(double days) {
        std::vector<std::filesystem::path> items;
        for (const auto& item : std::filesystem::recursive_directory_iterator(testRoot())) {
            items.push_back(item.path());
        }
        for (const std::filesystem::path& item : items) {
            setDates(item, daysAgo(days));
        }
    }
};

}  // namespace vesk::testing

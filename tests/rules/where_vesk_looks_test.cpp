// The page that tells users where Vesk looks, held against the rules themselves.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>

#include "rules/linux_places.h"

namespace vesk::rules {
namespace {

std::string textOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::set<std::string> matchesIn(const std::string& text, const char* pattern) {
    const std::regex expression(pattern);
    std::set<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), expression); match != std::sregex_iterator(); ++match) {
        found.insert((*match)[1]);
    }
    return found;
}

// The texts between backquotes.
std::set<std::string> placesOnThePage() {
    return matchesIn(textOf(std::filesystem::path(VESK_DOCS) / "where-vesk-looks.md"), "`([^`]+)`");
}

std::set<std::string> placesOfLinux() {
    std::set<std::string> places;
    const auto add = [&](const auto& table) {
        for (const LinuxPlace& place : table) {
            places.emplace(place.pattern);
        }
    };
    add(linuxCaches);
    add(linuxCrashReports);
    add(linuxModels);
    add(linuxHomebrew);
    add(linuxPackages);
    add(linuxDisks);
    add(linuxFlatpakFolders);
    add(linuxSnapFolders);
    return places;
}

// The paths that stand in the rules' sources: texts with a slash in them.
std::set<std::string> pathsInSources() {
    std::set<std::string> paths;
    for (const auto& file :
         std::filesystem::directory_iterator(std::filesystem::path(VESK_DOCS).parent_path() / "src/rules")) {
        const std::string text = std::regex_replace(textOf(file.path()), std::regex("(#include|//)[^\n]*"), "");
        if (file.path().filename() != "linux_places.h") {
            paths.merge(matchesIn(text, "\"([^\"\n]*)\""));
        }
    }
    std::erase_if(paths, [](const std::string& literal) { return literal.find('/') == std::string::npos; });
    // Parts of paths, where desktop files lie, and what stands for XDG folders that no variable names.
    for (const char* other :
         {"/", "../", ".var/app", "~/", "lib/node_modules", ".local/share", ".local/share/flatpak",
          "flatpak/exports/share/applications", "/usr/share/applications", "/usr/local/share/applications",
          "/var/lib/flatpak/exports/share/applications", "/var/lib/snapd/desktop/applications"}) {
        paths.erase(other);
    }
    return paths;
}

TEST(WhereVeskLooks, NamesEveryPlaceOfTheRules) {
    const std::set<std::string> page = placesOnThePage();
    const std::set<std::string> paths = pathsInSources();
    EXPECT_GT(paths.size(), 30U);
    for (const std::set<std::string>& places : {placesOfLinux(), paths}) {
        for (const std::string& place : places) {
            EXPECT_TRUE(page.contains(place)) << place;
        }
    }
}

TEST(WhereVeskLooks, NamesNoOtherPlace) {
    std::set<std::string> known = placesOfLinux();
    known.merge(pathsInSources());
    // What the page explains, and exceptions from places.
    for (const char* other :
         {"~/.cache", "~/.config", "~/.local/share", "~/.lmstudio-home-pointer", "v*/links/*", "links/*"}) {
        known.insert(other);
    }
    for (const std::string& place : placesOnThePage()) {
        EXPECT_TRUE(place.find('/') == std::string::npos || known.contains(place)) << place;
    }
}

TEST(WhereVeskLooks, NamesThePlacesThatAreNarrowed) {
    const std::set<std::string> page = placesOnThePage();
    EXPECT_TRUE(std::all_of(narrowedOnLinux.begin(), narrowedOnLinux.end(),
                            [&](std::string_view place) { return page.contains(std::string(place)); }));
}

}  // namespace
}  // namespace vesk::rules

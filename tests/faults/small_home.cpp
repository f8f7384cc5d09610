#include "faults/small_home.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/system/preferences.h"
#include "platform/trash/trash_info.h"
#include "state/history_codec.h"
#include "support/temporary_home.h"
#include "support/trash_home.h"

namespace vesk::testing {

namespace {

namespace fs = std::filesystem;

constexpr const char* snapshotTool =
    "#!/bin/sh\n"
    "case $1 in\n"
    "listlocalsnapshots) echo com.apple.TimeMachine.2024-05-01-101530.local ;;\n"
    "deletelocalsnapshots) echo \"$2\" >>\"${0%/*}/deleted\" ;;\n"
    "esac\n";

// Has the same name as an item, so that the two must be told apart in the Trash.
constexpr const char* olderName = "old.ips";

fs::path trashFiles() {
    return homeTrash() / "files";
}

fs::path trashInfo() {
    return homeTrash() / "info";
}

fs::path olderPlace() {
    return testHome() / "older" / olderName;
}

HistoryEntry olderRun() {
    HistoryEntry run;
    run.date = historyDate(daysAgo(100));
    run.bytes = 4096;
    run.titles = {"Old crash reports"};
    run.moves = {{olderPlace().string(), (trashFiles() / olderName).string(), 4096}};
    return run;
}

// Dates an item and everything in it, innermost first.
void age(const fs::path& item, Date date) {
    std::error_code ignored;
    if (fs::is_directory(fs::symlink_status(item))) {
        for (const auto& inner : fs::directory_iterator(item, ignored)) {
            age(inner.path(), date);
        }
    }
    setDates(item, date);
}

}  // namespace

void SmallHome::add(const fs::path& item) {
    items_[item] = portrait(item);
}

void SmallHome::keep(const fs::path& item) {
    kept_[item] = portrait(item);
}

void SmallHome::make() {
    items_.clear();
    kept_.clear();
    std::error_code ignored;
    fs::remove_all(testRoot(), ignored);
    const fs::path home = testHome();
    const fs::path caches = home / "Library/Caches";
    const fs::path support = home / "Library/Application Support";

    writeFile(caches / "com.acme.Editor/data", "data of the editor");
    writeFile(caches / "com.acme.Editor/inner/more", "more of it");
    writeFile(caches / "Fetcher.db", "a file among folders");
    writeFile(home / "Elsewhere/cache/file", "behind a link");
    makeLink(caches / "linked", home / "Elsewhere/cache");
    writeFile(home / "Library/Logs/DiagnosticReports" / olderName, "a report");
    writeFile(home / "Downloads/a \"b\"\nc.zip", "an old download");
    writeFile(home / "code/site/node_modules/x/index.js", "code of others");
    writeFile(home / "code/site/package.json", "{}");
    writeFile(home / ".npm/_cacache/blob", "a package");
    writeFile(support / "Gone/state", "of an application that is gone");
    writeFile(folderOfAnApplication() / "state", "of one that is there");
    writeFile(testRoot() / "Applications/Notes.app/Contents/Info.plist", "<plist/>");
    writeFile(testRoot() / "private/var/folders/aa/bb/X/com.google.Chrome.code_sign_clone/file", "a clone");
    writeFile(home / "Documents/letter", "precious");
    const fs::path tool = testRoot() / "usr/bin/tmutil";
    writeFile(tool, snapshotTool);
    fs::permissions(tool, fs::perms::owner_all);
    const auto ageAll = [&, longAgo = daysAgo(400)] {
        for (const char* old : {"Library", "Downloads", "code", ".npm", "Documents", "Elsewhere"}) {
            age(home / old, longAgo);
        }
    };
    ageAll();

    writeFile(trashFiles() / olderName, "older");
    writeFile(trashInfo() / (std::string(olderName) + std::string(trashInfoSuffix)),
              trashInfoText(olderPlace().string(), daysAgo(100)));
    Preferences().setData("vesk.history", encodeHistory({olderRun()}));

    for (const char* name : {"com.acme.Editor", "Fetcher.db", "linked"}) {
        add(caches / name);
    }
    add(home / "Library/Logs/DiagnosticReports" / olderName);
    add(home / "Downloads/a \"b\"\nc.zip");
    add(home / "code/site/node_modules");
    add(home / ".npm");
    add(support / "Gone");
    add(folderOfAnApplication());
    add(testRoot() / "private/var/folders/aa/bb/X/com.google.Chrome.code_sign_clone");
    keep(home / "Elsewhere");
    keep(home / "code/site/package.json");
    keep(testRoot() / "Applications");
    keep(home / "Documents");
    keep(tool);
    keep(trashFiles() / olderName);
    keep(trashInfo() / (std::string(olderName) + std::string(trashInfoSuffix)));
    ageAll();  // reading them has set their access dates
}

std::vector<fs::path> SmallHome::items() const {
    std::vector<fs::path> paths;
    for (const auto& [path, portrait] : items_) {
        if (path != folderOfAnApplication()) {
            paths.push_back(path);
        }
    }
    return paths;
}

fs::path SmallHome::folderOfAnApplication() {
    return testHome() / "Library/Application Support/Notes";
}

std::vector<fs::path> SmallHome::trashedFrom(const fs::path& place) {
    std::vector<fs::path> found;
    for (const std::string& record : namesIn(trashInfo())) {
        const std::string name = record.substr(0, record.size() - trashInfoSuffix.size());
        if (placeInTrashInfo(contentOf(trashInfo() / record)) == place.string() && isThere(trashFiles() / name)) {
            found.push_back(trashFiles() / name);
        }
    }
    return found;
}

void SmallHome::expectNothingLost(bool onceOnly) const {
    for (const auto& [place, before] : items_) {
        std::vector<fs::path> found = trashedFrom(place);
        if (isThere(place)) {
            found.push_back(place);
        }
        ASSERT_FALSE(found.empty()) << place << " is neither at its place nor in the Trash on record";
        if (onceOnly) {
            EXPECT_EQ(found.size(), 1U) << place;
        }
        for (const fs::path& item : found) {
            EXPECT_EQ(portrait(item), before) << item;
        }
    }
    for (const auto& [place, before] : kept_) {
        EXPECT_EQ(portrait(place), before) << place;
    }
}

void SmallHome::expectAllInPlace() const {
    expectNothingLost(true);
    for (const auto& [place, before] : items_) {
        EXPECT_TRUE(isThere(place)) << place;
    }
    EXPECT_THAT(namesIn(trashFiles()), ::testing::ElementsAre(olderName));
    EXPECT_THAT(namesIn(trashInfo()), ::testing::ElementsAre(std::string(olderName) + std::string(trashInfoSuffix)));
}

std::size_t SmallHome::snapshotsDeleted() {
    const std::string lines = contentOf(testRoot() / "usr/bin/deleted");
    return static_cast<std::size_t>(std::count(lines.begin(), lines.end(), '\n'));
}

std::vector<HistoryEntry> SmallHome::storedHistory() {
    const auto bytes = Preferences().data("vesk.history");
    const auto read = bytes ? decodeHistory(*bytes) : std::nullopt;
    EXPECT_TRUE(read) << "the stored history cannot be read";
    if (!read) {
        return {};
    }
    EXPECT_FALSE(read->empty());
    if (!read->empty()) {
        EXPECT_EQ(read->back().moves, olderRun().moves) << "the run of the older day is gone from the history";
    }
    return *read;
}

}  // namespace vesk::testing

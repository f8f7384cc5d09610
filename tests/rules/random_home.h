// Homes made at random, and what every rule keeps to in them: nothing outside its places, twice the same, no trace.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>
#include <regex>
#include <set>
#include <span>

#include "platform/files/files.h"
#include "rules/catalogue.h"
#include "rules/rule_test.h"
#include "support/stat_times.h"

namespace vesk::testing {

namespace fs = std::filesystem;

/// What random homes are made of.
struct HomeParts {
    /// Files of the home, each made in about every other one.
    std::span<const char* const> rare;
    /// Folders below the root, or with "~" below the home.
    std::span<const char* const> locations;
    /// Of what is made there.
    std::span<const char* const> names;
};

/// Homes of all that rules look for, that they nearly look for, and that they stumble over.
class RandomHome {
public:
    RandomHome(unsigned seed, const HomeParts& parts) : parts_(parts), random_(seed) {
        const unsigned count = 50 + below(60);
        // Rare things first, each in about every other home, that random names would seldom bring together.
        for (const char* path : parts_.rare) {
            if (below(2) == 0) {
                makeSpace(made(testHome() / path));
            }
        }
        for (unsigned i = 0; i < count; ++i) {
            makeItem(place());
        }
        setAllDates();
        closeSome();
    }
    ~RandomHome() {
        // Backwards, since one may lie in another.
        for (auto folder = closed_.rbegin(); folder != closed_.rend(); ++folder) {
            chmod(folder->c_str(), 0700);
        }
    }
    RandomHome(const RandomHome&) = delete;
    RandomHome& operator=(const RandomHome&) = delete;

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

    const char* oneOf(std::span<const char* const> choices) {
        return choices[below(static_cast<unsigned>(choices.size()))];
    }

    fs::path place() {
        fs::path path = oneOf(parts_.locations);
        for (unsigned depth = 1 + below(3); depth > 0; --depth) {
            // Render files inside render files are offered both, so that a sum over them would count twice.
            const char* name = oneOf(parts_.names);
            const std::string above = path.string();
            const bool rendered =
                std::string_view(name) == "Render Files" || std::string_view(name) == "Transcoded Media";
            if (!rendered ||
                (above.find("Render") == std::string::npos && above.find("Transcoded") == std::string::npos)) {
                path /= name;
            }
        }
        const std::string text = path.string();
        return text.starts_with('~') ? testHome() / fs::path(text.substr(std::min<std::size_t>(2, text.size())))
                                     : testRoot() / path;
    }

    // The path, with the folders above it, unless something is in the way.
    static fs::path made(fs::path path) {
        std::error_code inTheWay;
        fs::create_directories(path.parent_path(), inTheWay);
        return path;
    }

    void makeItem(const fs::path& path) {
        made(path);
        std::error_code inTheWay;
        switch (below(12)) {
            case 0:
                fs::create_directories(path, inTheWay);
                break;
            case 1:
                fs::create_symlink(below(2) == 0 ? "nowhere" : "b.txt", path, inTheWay);
                break;
            case 2:
                mkfifo(path.c_str(), 0600);
                break;
            default:
                makeSpace(path);
        }
    }

    // Synced, since what is allocated must not change while it is looked at.
    void makeSpace(const fs::path& path) {
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (file >= 0) {
            const std::string content(below(5) * 5000, 'v');
            EXPECT_EQ(write(file, content.data(), content.size()), static_cast<ssize_t>(content.size()));
            EXPECT_EQ(fsync(file), 0);
            close(file);
        }
    }

    // Sorted, so that a seed makes the same home on every file system.
    template <typename Filter>
    static std::vector<fs::path> itemsBelow(Filter filter) {
        std::vector<fs::path> items;
        for (const fs::directory_entry& item : fs::recursive_directory_iterator(testRoot())) {
            if (filter(item)) {
                items.push_back(item.path());
            }
        }
        std::sort(items.begin(), items.end());
        return items;
    }

    void setAllDates() {
        for (const fs::path& item : itemsBelow([](const fs::directory_entry&) { return true; })) {
            setDates(item, someDate(), someDate());
        }
    }

    // Mostly long ago, sometimes on one side or the other of what rules cut off at.
    Date someDate() {
        static constexpr double days[] = {200, 150, 100, 90, 61, 59, 15, 13, 8, 6, 0, -2};
        return daysAgo(days[below(below(8) == 0 ? 12 : 4)]);
    }

    void closeSome() {
        const std::vector<fs::path> folders = itemsBelow(
            [](const fs::directory_entry& item) { return item.symlink_status().type() == fs::file_type::directory; });
        for (unsigned i = 0; i < 2; ++i) {
            closed_.push_back(folders[below(static_cast<unsigned>(folders.size()))]);
            chmod(closed_.back().c_str(), below(2) == 0 ? 0000 : 0400);
        }
    }

    const HomeParts& parts_;
    std::mt19937 random_;
    std::vector<fs::path> closed_;
};

// One line an item: everything that can be told of it without touching it.
inline std::vector<std::string> everythingBelow(const fs::path& top, std::int64_t& allocatedBytes) {
    std::vector<std::string> lines;
    std::vector<fs::path> toDo = {top};
    allocatedBytes = 0;
    while (!toDo.empty()) {
        const fs::path path = toDo.back();
        toDo.pop_back();
        struct stat found {};
        if (lstat(path.c_str(), &found) != 0) {
            continue;  // in a folder that may be listed but not searched
        }
        std::string line = path.string() + "|" + std::to_string(found.st_ino) + "|" + std::to_string(found.st_mode) +
                           "|" + std::to_string(found.st_size) + "|" + std::to_string(found.st_blocks);
        // Whoever follows a link sets the link's own access time: nothing can follow one without.
        const timespec read = S_ISLNK(found.st_mode) ? timespec{} : accessed(found);
        for (const timespec& time : {modified(found), changed(found), read}) {
            line += "|" + std::to_string(time.tv_sec) + "." + std::to_string(time.tv_nsec);
        }
        lines.push_back(line);
        allocatedBytes += S_ISREG(found.st_mode) ? static_cast<std::int64_t>(found.st_blocks) * 512 : 0;
        if (S_ISDIR(found.st_mode)) {
            const FolderListing listing = listFolder(path, ListingDetail::kinds);
            for (const FolderItem& item : listing.items) {
                toDo.push_back(path / item.name);
            }
        }
    }
    return lines;
}

// What a scan found, without the identifiers that every scan makes anew.
inline std::vector<std::string> linesOfScan(std::vector<Card>& cards) {
    std::vector<std::string> lines;
    for (const Spec& spec : Scanner::specs()) {
        Probe probe(std::make_shared<Tracker>());
        const std::vector<Card> found = spec.run(probe);
        lines.push_back(spec.label + (probe.blocked ? " blocked" : ""));
        for (const Card& card : found) {
            lines.push_back(card.id + "|" + card.title + "|" + std::to_string(card.dormancyDays));
            for (const Entry& entry : card.entries) {
                const auto used = entry.lastUsed ? entry.lastUsed->time_since_epoch().count() : 0;
                lines.push_back(entry.url.string() + "|" + entry.name + "|" + std::to_string(entry.size) + "|" +
                                std::to_string(used));
            }
            cards.push_back(card);
        }
    }
    return lines;
}

inline std::string placeOf(const fs::path& url) {
    const std::string home = testHome().string() + "/";
    const std::string root = testRoot().string() + "/";
    const std::string text = url.string();
    if (text.starts_with(home)) {
        return "~/" + text.substr(home.size());
    }
    return text.starts_with(root) ? text.substr(root.size()) : "outside: " + text;
}

/// Scans as many random homes and expects of each card's entries that they lie where `places` says, as their paths from
/// the root with "~" for the home; and that each card of `places` comes up.
inline void expectRulesToKeepToPlaces(const HomeParts& parts, const std::map<std::string, std::regex>& places,
                                      unsigned homes) {
    std::set<std::string> cardsSeen;
    for (unsigned seed = 1; seed <= homes; ++seed) {
        SCOPED_TRACE(seed);
        fs::remove_all(testRoot());
        makeFolder(testHome());
        const RandomHome home(seed, parts);

        std::int64_t allocatedBytes = 0;
        const std::vector<std::string> before = everythingBelow(testRoot(), allocatedBytes);
        std::vector<Card> cards;
        const std::vector<std::string> first = linesOfScan(cards);
        std::vector<Card> again;
        EXPECT_EQ(linesOfScan(again), first);
        std::int64_t allocatedAfter = 0;
        EXPECT_EQ(everythingBelow(testRoot(), allocatedAfter), before);

        std::int64_t offered = 0;
        for (const Card& card : cards) {
            cardsSeen.insert(card.id);
            std::set<fs::path> urls;
            for (const Entry& entry : card.entries) {
                EXPECT_TRUE(urls.insert(entry.url).second) << card.id << " has twice " << entry.url;
                EXPECT_TRUE(std::regex_match(placeOf(entry.url), places.at(card.id)))
                    << card.id << " offers " << entry.url;
                EXPECT_GT(entry.size, 0);
            }
            offered += card.size();
        }
        EXPECT_LE(offered, allocatedBytes);
        if (::testing::Test::HasFailure()) {
            break;
        }
    }
    // The homes are worth searching: each card but the snapshots, of which there is no tool to tell, comes up.
    for (const auto& [card, ignored] : places) {
        EXPECT_TRUE(cardsSeen.contains(card)) << card;
    }
}

}  // namespace vesk::testing

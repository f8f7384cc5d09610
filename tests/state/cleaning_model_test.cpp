// Random cleans and undos over random trees, held against a simple model of what must be where.
// VESK_MODEL_STEPS sets another number of steps.

#include <gmock/gmock.h>

#include <cstdlib>
#include <random>

#include "state/cleaning_worker.h"
#include "state/restore_worker.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

class CleaningModelTest : public TemporaryHome {
protected:
    using Portrait = std::map<std::string, std::string>;

    std::mt19937 random{20260704};  // NOLINT(cert-msc51-cpp): the same steps at each run
    const fs::path home = testHome();

    // The model: each item that exists, by its place now. An undo or a clean only ever moves one from key to key.
    std::map<fs::path, Portrait> places;
    std::vector<std::vector<TrashedItem>> cleans;
    // Which of the cleans has put an item into the Trash, by its place there.
    std::map<fs::path, std::size_t> cleanedBy;

    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random); }

    fs::path randomPlace() {
        static const std::vector<std::string> names = {
            "a", "b", "node_modules", "name with space", "\xC3\xA9t\xC3\xA9", "per%20cent", "line\nbreak"};
        return home / ("folder" + std::to_string(below(4))) / names[below(names.size())];
    }

    void makeTree(const fs::path& top, int depth) {
        switch (below(depth > 0 ? 4 : 2)) {
            case 0:
                writeFile(top, std::string(below(40), static_cast<char>('a' + below(26))));
                fs::permissions(top, static_cast<fs::perms>(0400 | below(0400)));
                break;
            case 1:
                makeLink(top, below(2) == 0 ? "nowhere" : "../folder1");
                break;
            default:
                makeFolder(top);
                for (std::size_t i = below(4); i > 0; --i) {
                    makeTree(top / ("inner" + std::to_string(i)), depth - 1);
                }
                fs::permissions(top, static_cast<fs::perms>(0700 | below(0100)));
        }
        setDates(top, daysAgo(static_cast<double>(below(1000))));
    }

    void makeItem() {
        const fs::path place = randomPlace();
        if (!isThere(place)) {
            makeTree(place, 2);
            places[place] = portrait(place);
        }
    }

    void cleanSome() {
        std::vector<SeenItem> workList;
        for (std::size_t i = 1 + below(4); i > 0; --i) {
            workList.push_back(seen(randomPlace()));
        }
        CleaningTools tools;
        tools.moveToTrash = moveToTrash;
        CleaningLog log;
        runCleaning(workList, {}, tools, log);
        const CleaningResult result = log.result();
        EXPECT_EQ(result.moves.size() + static_cast<std::size_t>(result.failures), workList.size());
        auto move = result.moves.begin();
        for (const SeenItem& item : workList) {
            const auto found = places.find(item.path);
            if (found == places.end()) {
                continue;  // must have been a failure: the moves would not come out even
            }
            ASSERT_NE(move, result.moves.end());
            ASSERT_EQ(move->original, item.path);
            ASSERT_FALSE(places.contains(move->trashed)) << "over an item in the Trash: " << move->trashed;
            places[move->trashed] = std::move(found->second);
            cleanedBy[move->trashed] = cleans.size();
            places.erase(item.path);
            ++move;
        }
        ASSERT_EQ(move, result.moves.end());
        // Every other one without its receipt, by the Trash's records alone.
        cleans.push_back(
            trashedItems(result.moves, now(), cleans.size() % 2 == 0 ? result.receipt : Receipt(result.moves.size())));
    }

    void undoOne() {
        if (cleans.empty()) {
            return;
        }
        const std::size_t clean = below(cleans.size());
        std::size_t expected = 0;
        for (const TrashedItem& item : cleans[clean]) {
            const auto owner = cleanedBy.find(item.place);
            if (owner != cleanedBy.end() && owner->second == clean && !places.contains(item.original)) {
                const auto found = places.find(item.place);
                places[item.original] = std::move(found->second);
                places.erase(found);
                cleanedBy.erase(owner);
                ++expected;
            }
        }
        EXPECT_EQ(restoreItems(cleans[clean]), expected);
    }

    void loseFromTrash() {
        const auto trashed = namesIn(homeTrash() / "files");
        if (!trashed.empty()) {
            const std::string& name = trashed[below(trashed.size())];
            fs::remove_all(homeTrash() / "files" / name);
            fs::remove(homeTrash() / "info" / (name + ".trashinfo"));
            places.erase(homeTrash() / "files" / name);
            cleanedBy.erase(homeTrash() / "files" / name);
        }
    }

    void loseFolder() {
        // With it goes the identity that a later scan sees.
        const fs::path folder = home / ("folder" + std::to_string(below(4)));
        fs::remove_all(folder);
        std::erase_if(places, [&](const auto& item) { return item.first.parent_path() == folder; });
    }

    // All that exists, and no more, is where the model says, as it was; every item in the Trash has its record.
    void expectModel() {
        std::size_t found = 0;
        for (const auto& [place, before] : places) {
            ASSERT_EQ(portrait(place), before) << place;
        }
        for (int number = 0; number < 4; ++number) {
            found += namesIn(home / ("folder" + std::to_string(number))).size();
        }
        const auto trashed = namesIn(homeTrash() / "files");
        ASSERT_EQ(found + trashed.size(), places.size());
        const auto records = namesIn(homeTrash() / "info");
        ASSERT_EQ(records.size(), trashed.size());
        for (const std::string& name : trashed) {
            ASSERT_TRUE(isThere(homeTrash() / "info" / (name + ".trashinfo"))) << name;
        }
    }
};

TEST_F(CleaningModelTest, RandomCleansAndUndosKeepEverythingAccountedFor) {
    const char* wanted = std::getenv("VESK_MODEL_STEPS");
    const int steps = wanted != nullptr ? std::stoi(wanted) : 3'000;
    for (int step = 0; step < steps && !HasFailure(); ++step) {
        SCOPED_TRACE(step);
        // Without a receipt, the second of its deletion tells an item from one that was cleaned from there earlier.
        stopClock(dateFromUnix(1'790'000'000 + 2 * step, 0));
        const std::size_t kind = below(100);
        if (kind < 45) {
            makeItem();
        } else if (kind < 70) {
            cleanSome();
        } else if (kind < 92) {
            undoOne();
        } else if (kind < 99) {
            loseFromTrash();
        } else {
            loseFolder();
        }
        if (step % 20 == 0) {
            expectModel();
        }
    }
    expectModel();
    EXPECT_GT(cleans.size(), static_cast<std::size_t>(steps) / 10);
}

}  // namespace
}  // namespace vesk

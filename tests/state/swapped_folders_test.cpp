// Somebody swaps folders for links while Vesk cleans. The links' targets are never touched, and nothing that Vesk moves
// is lost. VESK_RACE_ROUNDS sets the number of rounds.

#include <gmock/gmock.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "state/store_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

int rounds() {
    const char* wanted = std::getenv("VESK_RACE_ROUNDS");  // NOLINT(concurrency-mt-unsafe): no other thread yet
    return wanted == nullptr ? 50 : std::atoi(wanted);     // NOLINT(cert-err34-c): a number, or nothing is tried
}

class SwappedFoldersTest : public StoreHome {
protected:
    const fs::path junk = testHome() / "Junk";
    const std::vector<std::string> names = {"a", "b", "c", "d", "e", "f", "g", "h"};

    SwappedFoldersTest() { offerItemsOf(junk); }

    // Have the same names as the junk: one at a place out of Vesk's reach, one within it.
    static std::vector<fs::path> canaries() { return {testRoot() / "Elsewhere", testHome() / "Documents"}; }

    void makeTrees() const {
        std::error_code ignored;
        for (const char* folder : {"Junk", ".local", "Documents"}) {
            fs::remove_all(testHome() / folder, ignored);
        }
        fs::remove_all(canaries()[0], ignored);
        for (const std::string& name : names) {
            writeFile(junk / name / "file", "junk " + name);
            for (const fs::path& canary : canaries()) {
                writeFile(canary / name / "file", "precious " + name);
            }
        }
    }

    // Swaps the item at `place` for a link to `target` and back until `stop`; at the end everything is as before.
    static void swapUntil(const std::atomic<bool>& stop, const fs::path& place, const fs::path& target) {
        const fs::path aside = place.string() + ".aside";
        const fs::path link = place.string() + ".link";
        std::error_code ignored;
        while (!stop) {
            fs::create_symlink(target, link, ignored);
            fs::rename(place, aside, ignored);
            fs::rename(link, place, ignored);
            std::this_thread::yield();
            fs::rename(place, link, ignored);
            fs::rename(aside, place, ignored);
            std::this_thread::yield();
        }
        fs::remove(link, ignored);
    }

    // One clean while `place` is swapped. Returns how many items it moved.
    std::int64_t cleanWhileSwapping(const fs::path& place, const fs::path& target) {
        std::atomic<bool> stop = false;
        std::thread other([&] { swapUntil(stop, place, target); });
        store_->performClean();
        EXPECT_TRUE(waitFor([&] { return !store_->cleaning(); }));
        stop = true;
        other.join();
        EXPECT_TRUE(waitFor([&] { return !store_->busy(); }));
        return static_cast<std::int64_t>(store_->history()[0].moves.size());
    }

    // The text of every file below a folder that starts like this.
    static std::vector<std::string> textsIn(const fs::path& folder, const std::string& beginning) {
        std::vector<std::string> texts;
        std::error_code ignored;
        for (const auto& item : fs::recursive_directory_iterator(folder, ignored)) {
            const std::string text = item.is_regular_file() ? contentOf(item.path()) : "";
            if (text.starts_with(beginning)) {
                texts.push_back(text);
            }
        }
        std::sort(texts.begin(), texts.end());
        return texts;
    }

    void expectEverythingAccountedFor(const std::vector<std::map<std::string, std::string>>& before) const {
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(portrait(canaries()[i]), before[i]) << "the canary " << canaries()[i];
        }
        std::vector<std::string> wanted;
        for (const std::string& name : names) {
            wanted.push_back("junk " + name);
        }
        EXPECT_EQ(textsIn(testHome(), "junk "), wanted);
        EXPECT_EQ(store_->celebration()->failures + static_cast<std::int64_t>(store_->history()[0].moves.size()),
                  static_cast<std::int64_t>(names.size()));
    }

    struct Count {
        std::int64_t moved = 0;
        std::int64_t refused = 0;
        // Items that were links when they were moved.
        std::int64_t links = 0;
    };

    static std::int64_t linksInTrash() {
        std::int64_t links = 0;
        for (const std::string& name : namesIn(trashFiles())) {
            links += fs::is_symlink(trashFiles() / name) ? 1 : 0;
        }
        return links;
    }

    // `swapped`: what is swapped in a round.
    Count race(const std::function<fs::path(int)>& swapped, const std::function<fs::path(int)>& target) {
        Count count;
        const int all = rounds();
        for (int round = 0; round < all && !HasFailure(); ++round) {
            makeTrees();
            scannedStore();
            EXPECT_EQ(store_->cards().at(0).entries.size(), names.size());
            std::vector<std::map<std::string, std::string>> before;
            for (const fs::path& canary : canaries()) {
                before.push_back(portrait(canary));
            }
            count.moved += cleanWhileSwapping(swapped(round), target(round));
            count.refused += store_->celebration()->failures;
            count.links += linksInTrash();
            expectEverythingAccountedFor(before);
        }
        std::printf("race: %d rounds, %ld items moved, %ld of them links, %ld refused\n", all,
                    static_cast<long>(count.moved), static_cast<long>(count.links), static_cast<long>(count.refused));
        return count;
    }
};

TEST_F(SwappedFoldersTest, TheFolderOfTheItemsIsNeverFollowedElsewhere) {
    const Count count =
        race([&](int) { return junk; }, [](int round) { return canaries()[static_cast<std::size_t>(round) % 2]; });
    EXPECT_GT(count.moved, 0);
    EXPECT_GT(count.refused, 0) << "the race has never been on";
}

TEST_F(SwappedFoldersTest, AnItemThatBecomesALinkIsMovedAsALink) {
    const Count count = race([&](int round) { return junk / names[static_cast<std::size_t>(round) % names.size()]; },
                             [&](int round) {
                                 return canaries()[static_cast<std::size_t>(round) % 2] /
                                        names[static_cast<std::size_t>(round) % names.size()];
                             });
    EXPECT_GT(count.links, 0) << "the race has never been on";
}

}  // namespace
}  // namespace vesk

// Other programs (trash-cli and gio) trash, restore and empty while Vesk cleans and undoes, at random moments and with
// equal names on purpose. Afterwards every file is at its place, or in the Trash with a record of its place, and has
// its own bytes; only what one of those programs deleted or replaced is gone. VESK_RACE_ROUNDS sets the number of
// rounds, VESK_RACE_SEED the seed.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <thread>

#include "platform/files/descriptor.h"
#include "platform/trash/trash_info.h"
#include "state/store_home.h"
#include "support/child_program.h"
#include "support/private_mounts.h"
#include "support/reachable_copy.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

// Logs what a program does to the names of files.
const ReachableCopy nameLog(VESK_NAME_LOG);

unsigned long setting(const char* name, unsigned long otherwise) {
    const char* wanted = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): no other thread yet
    return wanted == nullptr ? otherwise : std::stoul(wanted);
}

// A file that must not be lost: the item that it is or lies in, and what is in it.
struct Precious {
    fs::path place;
    fs::path item;
    std::string content;
    // Keeps the inode number from being reused, and shows how many names the file has.
    Descriptor file;

    struct stat look() const {
        struct stat found {};
        EXPECT_EQ(fstat(file.get(), &found), 0);
        return found;
    }
};

class OtherProgramsTest : public StoreHome {
protected:
    std::mt19937 random{static_cast<unsigned>(setting("VESK_RACE_SEED", 20261121))};
    const std::vector<fs::path> junk = {testHome() / "Junk1", testHome() / "Junk2", testHome() / "Junk3"};
    const std::vector<fs::path> own = {testHome() / "Own1", testHome() / "Own2"};
    const fs::path log = testRoot().parent_path() / "names";
    std::vector<Precious> files;
    std::map<std::string, long> count;

    // On a file system of its own: a program that cannot use the home Trash uses the volume's, which must be in the
    // made-up world too.
    void SetUp() override {
        if (!enterPrivateMounts()) {
            GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
        }
        ASSERT_TRUE(mountTemporaryFileSystem(testRoot(), "size=64m"));
        for (const char* program : {"trash-put", "trash-empty", "trash-restore", "gio"}) {
            ASSERT_EQ(shell(std::string("command -v ") + program).status, 0)
                << program << " is needed for this test (Debian: trash-cli, libglib2.0-bin)";
        }
        setenv("HOME", testHome().c_str(), 1);
        setenv("XDG_DATA_HOME", world().dataHome.c_str(), 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        for (const fs::path& folder : junk) {
            offerItemsOf(folder, folder.filename().string());
        }
    }

    void TearDown() override {
        store_.reset();
        files.clear();
        unmount(testRoot());
    }

    ProgramRun shell(const std::string& command) const {
        return runProgram("/bin/sh", {"-c", command + " >/dev/null 2>&1"},
                          {"LD_PRELOAD=" + nameLog.path(), "VESK_NAME_LOG=" + log.string()}, std::chrono::seconds(60));
    }
    std::size_t below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random); }

    void make(const fs::path& item, const fs::path& place, int round) {
        Precious file{place, item, "round " + std::to_string(round) + ": " + place.string(), Descriptor()};
        writeFile(place, file.content);
        file.file = Descriptor(open(place.c_str(), O_RDONLY | O_CLOEXEC));
        files.push_back(std::move(file));
    }
    void makeFiles(int round) {
        store_.reset();
        files.clear();
        std::error_code ignored;
        for (const auto& item : fs::directory_iterator(testRoot(), ignored)) {
            fs::remove_all(item.path(), ignored);
        }
        std::ofstream(log).close();
        for (const std::vector<fs::path>& folders : {junk, own}) {
            for (const fs::path& folder : folders) {
                make(folder / "report.pdf", folder / "report.pdf", round);
                make(folder / "cache", folder / "cache", round);
                make(folder / "modules", folder / "modules/inner", round);
            }
        }
    }

    // A random command for one of the other programs.
    std::string randomCommand() {
        const std::string item = "'" + files[below(files.size())].item.string() + "'";
        switch (below(7)) {
            case 0:
            case 1:
                ++count["trash-put"];
                return "trash-put " + item;
            case 2:
            case 3:
                ++count["gio"];
                return "gio trash " + item;
            case 4:
                ++count["trash-empty"];
                // By default it would also empty the Trashes of the machine's volumes.
                return "trash-empty --trash-dir='" + homeTrash().string() + "'";
            default:
                ++count["trash-restore"];
                return "echo 0 | trash-restore " + item;
        }
    }

    // Starts them all, and cleans and undoes until the last has ended.
    void race() {
        std::atomic<int> running = 4;
        std::vector<std::thread> others;
        for (int i = running; i > 0; --i) {
            others.emplace_back([&, command = randomCommand(), delay = below(100)] {
                std::this_thread::sleep_for(std::chrono::milliseconds(delay));
                shell(command);
                --running;
            });
        }
        scannedStore();
        while (running > 0 && !HasFailure()) {
            clean();
            if (store_->history().empty()) {
                continue;  // there was nothing to clean
            }
            ++count["cleans"];
            count["moved"] += static_cast<long>(store_->history()[0].moves.size());
            undo(below(store_->history().size()));
        }
        for (std::thread& other : others) {
            other.join();
        }
    }

    // What the other programs did to the names of files, in order.
    struct Change {
        std::string what;
        ino_t inode = 0;
        fs::path place;
    };
    std::vector<Change> changesByOthers() const {
        std::vector<Change> changes;
        std::ifstream lines(log);
        std::string place;
        for (Change change; lines >> change.what >> change.inode && std::getline(lines >> std::ws, place);) {
            change.place = place;
            changes.push_back(change);
        }
        return changes;
    }

    // The last thing that another program did to a file that has no name any more: "deleted" or "replaced"; empty if
    // no other program did anything like that.
    static std::string howLost(const std::vector<Change>& changes, ino_t inode) {
        std::string how;
        for (const Change& change : changes) {
            how = change.inode == inode && change.what != "moved" ? change.what : how;
        }
        return how;
    }

    // Whether another program moved this item to one of these places.
    static bool othersMoved(const std::vector<Change>& changes, const fs::path& item,
                            const std::set<fs::path>& places) {
        struct stat seen {};
        return lstat(item.c_str(), &seen) == 0 &&
               std::any_of(changes.begin(), changes.end(), [&](const Change& change) {
                   return change.what == "moved" && change.inode == seen.st_ino && places.contains(change.place);
               });
    }

    // Where each file is, by inode number.
    static std::map<ino_t, fs::path> whereabouts() {
        std::map<ino_t, fs::path> found;
        for (const auto& item : fs::recursive_directory_iterator(testRoot())) {
            struct stat seen {};
            if (lstat(item.path().c_str(), &seen) == 0 && S_ISREG(seen.st_mode)) {
                found[seen.st_ino] = item.path();
            }
        }
        return found;
    }

    // The recorded place of the item at a path in a Trash, the home's or the volume's.
    static fs::path recordedPlace(const fs::path& path) {
        for (const fs::path& trash : {homeTrash(), testRoot() / (".Trash-" + std::to_string(getuid()))}) {
            const fs::path inTrash = path.lexically_relative(trash / "files");
            if (!inTrash.empty() && *inTrash.begin() != "..") {
                const std::string record = contentOf(trash / "info" / (inTrash.begin()->string() + ".trashinfo"));
                return testRoot() / placeInTrashInfo(record).value_or("nothing");
            }
        }
        return "no Trash";
    }

    // The other programs are not bound to what Vesk promises. One may move an item under a name whose record another
    // has just deleted, or restore it to the place of another item; Vesk then takes it from there.
    void expectAllAccountedFor(const std::string& when) {
        const std::map<ino_t, fs::path> places = whereabouts();
        const std::vector<Change> changes = changesByOthers();
        for (const Precious& file : files) {
            const struct stat seen = file.look();
            if (seen.st_nlink == 0) {
                EXPECT_NE(howLost(changes, seen.st_ino), "") << when << ", lost by no other program: " << file.place;
                continue;
            }
            const auto found = places.find(seen.st_ino);
            ASSERT_NE(found, places.end()) << when << ", nowhere in the world: " << file.place;
            EXPECT_EQ(contentOf(found->second), file.content) << when;
            if (found->second != file.place) {
                EXPECT_EQ(found->second.filename() == "inner", file.place.filename() == "inner");
                const fs::path item = found->second.filename() == "inner" ? found->second.parent_path() : found->second;
                const fs::path recorded = recordedPlace(found->second);
                if (recorded != file.item && othersMoved(changes, item, {item, recorded})) {
                    ++count["misplaced-by-others"];
                    continue;
                }
                EXPECT_EQ(recorded, file.item) << when << ", " << file.place << " is at " << found->second;
            }
        }
    }

    void undoAll() {
        for (std::size_t row = 0; row < store_->history().size(); ++row) {
            undo(row);
        }
    }
};

TEST_F(OtherProgramsTest, EveryFileIsAccountedForWhileOthersUseTheTrash) {
    const unsigned long rounds = setting("VESK_RACE_ROUNDS", 6);
    for (unsigned long round = 0; round < rounds && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        makeFiles(static_cast<int>(round));
        race();
        expectAllAccountedFor("after the race");
        undoAll();
        expectAllAccountedFor("after the last undo");
        const std::vector<Change> changes = changesByOthers();
        for (const Precious& file : files) {
            if (const struct stat seen = file.look(); seen.st_nlink == 0) {
                ++count[howLost(changes, seen.st_ino) + "-by-others"];
            }
        }
        ++count["rounds"];
    }
    std::printf("others:");
    for (const auto& [what, number] : count) {
        std::printf(" %s %ld", what.c_str(), number);
    }
    std::printf("\n");
    EXPECT_GT(count["moved"], 0);
}

}  // namespace
}  // namespace vesk

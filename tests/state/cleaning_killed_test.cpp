// A program that is killed at any system call of a clean or of an undo: no file is lost, the history is the old one or
// the new one, and the next start goes on where this one stopped.

#include <gmock/gmock.h>

#include <QCoreApplication>
#include <cstdio>

#include "platform/system/open_files.h"
#include "platform/trash/trash_info.h"
#include "state/history_codec.h"
#include "state/store_home.h"
#include "support/killed_process.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

fs::path junk() {
    return testHome() / "Junk";
}

// Stands in for the program in a process of its own.
class Program {
public:
    Program() {
        Store::Sources sources;
        sources.lookAtUse = [] {
            return OpenFiles(std::vector<UsedFile>());
        };  // no calls but those of the clean itself
        sources.catalogue = [] {
            return std::vector<Spec>{{"junk", [](Probe& probe) {
                                          const auto items = itemsOf(junk());
                                          return items.empty()
                                                     ? std::vector<Card>()
                                                     : std::vector<Card>{cardOf(probe, "junk", "Junk", items)};
                                      }}};
        };
        // A look at all processes is thousands of calls, none of which changes anything.
        sources.lookAtUse = [] { return OpenFiles(std::vector<UsedFile>()); };
        store_ = std::make_unique<Store>(std::move(sources));
    }

    Store& store() { return *store_; }
    bool scan() {
        store_->scan();
        return waitFor([this] { return !store_->busy(); });
    }
    bool clean() {
        store_->performClean();
        return waitFor([this] { return !store_->cleaning(); });
    }
    bool undo(std::size_t row) {
        store_->undo(store_->history().at(row).id);
        return waitFor([this] { return !store_->cleaning(); });
    }

private:
    int argumentCount_ = 1;
    char name_[6] = "vesk";
    char* arguments_[2] = {name_, nullptr};
    QCoreApplication application_{argumentCount_, arguments_};
    std::unique_ptr<Store> store_;
};

class CleaningKilledTest : public TemporaryHome {
protected:
    const fs::path files = homeTrash() / "files";
    const fs::path info = homeTrash() / "info";
    const std::vector<std::string> names = {"a", "b", "link"};

    // The items as they are at the start, each under the path that it belongs to.
    std::map<fs::path, std::map<std::string, std::string>> made;

    void makeItems() {
        writeFile(junk() / "a", "content of a");
        writeFile(junk() / "b/inner/file", "content of b");
        makeLink(junk() / "link", "b/inner/file");
        // A like-named item of an earlier day must stay in the Trash as it is.
        writeFile(files / "a", "older");
        writeFile(info / "a.trashinfo", trashInfoText((testHome() / "older/a").string(), now()));
        for (const std::string& name : names) {
            made[junk() / name] = portrait(junk() / name);
        }
    }

    // The items in the Trash whose record tells the given origin.
    std::vector<fs::path> trashedFrom(const fs::path& origin) const {
        std::vector<fs::path> found;
        for (const std::string& record : namesIn(info)) {
            const std::string name = record.substr(0, record.size() - trashInfoSuffix.size());
            if (placeInTrashInfo(contentOf(info / record)) == origin.string() && isThere(files / name)) {
                found.push_back(files / name);
            }
        }
        return found;
    }

    // Every item is once, whole, at its place or in the Trash with a record of where it belongs.
    void expectNothingLost(int call) const {
        for (const auto& [origin, before] : made) {
            const std::vector<fs::path> trashed = trashedFrom(origin);
            ASSERT_EQ(trashed.size() + (isThere(origin) ? 1U : 0U), 1U) << origin << " at call " << call;
            EXPECT_EQ(portrait(trashed.empty() ? origin : trashed[0]), before) << "at call " << call;
        }
        EXPECT_EQ(contentOf(files / "a"), "older") << "at call " << call;
    }
    static std::vector<HistoryEntry> storedHistory(int call) {
        const std::optional<std::string> bytes = Preferences().data("vesk.history");
        const auto read = bytes ? decodeHistory(*bytes) : std::vector<HistoryEntry>();
        EXPECT_TRUE(read) << "at call " << call;
        return read.value_or(std::vector<HistoryEntry>());
    }
    void expectAllInPlace(int call) const {
        for (const auto& [origin, before] : made) {
            EXPECT_EQ(portrait(origin), before) << origin << " at call " << call;
        }
        EXPECT_EQ(namesIn(info), std::vector<std::string>{"a.trashinfo"}) << "no ghosts, at call " << call;
    }
    void startAfresh() {
        made.clear();
        fs::remove_all(testHome());
        makeFolder(testHome());
        makeItems();
    }
    // Tries every call up to the run that is not killed any more, or every `stride`-th one.
    template <typename Attempt>
    static void atEveryCall(const char* what, Attempt attempt) {
        int call = 1;
        for (;; ++call) {
            if (!attempt(call)) {
                break;
            }
            if (HasFatalFailure() || HasFailure()) {
                return;
            }
        }
        EXPECT_GT(call, 20) << "the counting has begun";
        std::printf("%s: killed at each of its %d system calls\n", what, call - 1);
    }
};

TEST_F(CleaningKilledTest, ACleanKilledAnywhereLosesNothing) {
    atEveryCall("clean", [&](int call) {
        startAfresh();
        const KilledRun run = runKilledAt(call, [] {
            Program program;
            if (!program.scan()) {
                return false;
            }
            startCountingCalls();
            return program.clean();
        });
        EXPECT_TRUE(run.killed || run.succeeded);
        expectNothingLost(call);
        const auto history = storedHistory(call);
        EXPECT_LE(history.size(), 1U);
        if (!history.empty()) {
            EXPECT_EQ(history[0].moves.size(), 3U) << "at call " << call;
        }
        // The next start cleans what is left.
        EXPECT_TRUE(runApart([] {
            Program program;
            return program.scan() && (program.store().cards().empty() || program.clean()) &&
                   program.store().cards().size() <= 1;
        })) << "at call "
            << call;
        EXPECT_TRUE(namesIn(junk()).empty()) << "at call " << call;
        expectNothingLost(call);
        // Where names are not kept in order, the one record of the moment stays.
        EXPECT_LE(namesIn(info).size(), namesIn(files).size() + (homeKeepsOrderOfNames() ? 0 : 1))
            << "a record without its item, at call " << call;
        return run.killed;
    });
}

TEST_F(CleaningKilledTest, AnUndoKilledAnywhereIsFinishedByTheNext) {
    atEveryCall("undo", [&](int call) {
        startAfresh();
        EXPECT_TRUE(runApart([] {
            Program program;
            return program.scan() && program.clean();
        }));
        EXPECT_EQ(storedHistory(call).size(), 1U);
        const KilledRun run = runKilledAt(call, [] {
            Program program;
            startCountingCalls();
            return program.undo(0);
        });
        EXPECT_TRUE(run.killed || run.succeeded);
        // A record that outlived its item is the most that may be left; the item itself is there once.
        for (const auto& [origin, before] : made) {
            const std::vector<fs::path> trashed = trashedFrom(origin);
            EXPECT_EQ(trashed.size() + (isThere(origin) ? 1U : 0U), 1U) << origin << " at call " << call;
            EXPECT_EQ(portrait(trashed.empty() ? origin : trashed[0]), before) << "at call " << call;
        }
        EXPECT_EQ(storedHistory(call).size(), 1U) << "at call " << call;
        EXPECT_TRUE(runApart([] {
            Program program;
            return program.undo(0);
        })) << "at call "
            << call;
        expectAllInPlace(call);
        return run.killed;
    });
}

}  // namespace
}  // namespace vesk

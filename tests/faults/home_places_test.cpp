// Homes at odd places. Each has its own process, since a process has only one home.

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "platform/trash/trash_info.h"
#include "support/child_program.h"
#include "support/file_names.h"
#include "support/reachable_copy.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

const ReachableCopy driver(VESK_DRIVER);

class HomePlacesTest : public TemporaryHome {
protected:
    static nlohmann::json runIn(const fs::path& home, const std::vector<std::string>& steps) {
        std::vector<std::string> arguments = {testRoot().string(), home.string()};
        arguments.insert(arguments.end(), steps.begin(), steps.end());
        const ProgramRun run = runProgram(driver.path(), arguments);
        EXPECT_EQ(run.status, 0);
        return nlohmann::json::parse(run.output, nullptr, false);
    }

    static void expectCleanAndUndo(const fs::path& home) {
        const fs::path item = home / "Library/Caches/two\nlines";
        writeFile(item / "file", "content");
        const auto before = portrait(item);
        const auto told = runIn(home, {"scan", "clean"});
        EXPECT_EQ(told["celebration"]["failures"], 0);
        EXPECT_FALSE(isThere(item));
        const fs::path record = home / ".local/share/Trash/info/two\nlines.trashinfo";
        EXPECT_EQ(placeInTrashInfo(contentOf(record)), item.string());
        EXPECT_EQ(runIn(home, {"undo"})["notice"], "All 1 items are back where they were.");
        EXPECT_EQ(portrait(item), before);
        EXPECT_FALSE(isThere(record));
    }
};

TEST_F(HomePlacesTest, AHomeMayHaveAnyPath) {
    for (const std::string& name : {std::string("J\xC3\xB6rg and \xE5\xAE\xB6"), std::string("O'Neil \"x\"\n\t%20"),
                                    std::string("\xE2\x80\xAE right to left"), std::string(255, 'h')}) {
        SCOPED_TRACE(name);
        expectCleanAndUndo(testRoot() / "Users" / name);
    }
}

TEST_F(HomePlacesTest, AHomeWhosePathIsNotUtf8LosesNothing) {
    VESK_NEEDS_NAMES("caf\xE9");
    const fs::path home = testRoot() / "Users/caf\xE9";
    const fs::path file = home / "Library/Caches/one/file";
    writeFile(file, "content");
    const auto told = runIn(home, {"scan", "clean"});
    EXPECT_EQ(told["cards"].size(), 1U);
    EXPECT_EQ(told["celebration"]["failures"], 1);
    EXPECT_EQ(told["celebration"]["bytes"], 0);
    EXPECT_EQ(contentOf(file), "content");
}

TEST_F(HomePlacesTest, AHomeMayBeALink) {
    const fs::path home = testRoot() / "Users/linked";
    makeFolder(testRoot() / "Disk/home");
    makeLink(home, "../Disk/home");
    expectCleanAndUndo(home);
    EXPECT_TRUE(fs::is_symlink(home));
    EXPECT_TRUE(isThere(testRoot() / "Disk/home/Library/Caches"));
}

}  // namespace
}  // namespace vesk

// The Trash as other programs read it: trash-cli lists and restores what Vesk trashed, and finds no records without
// items after an undo.

#include <gmock/gmock.h>

#include <array>
#include <cstdio>
#include <cstdlib>

#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class TrashReadersTest : public TemporaryHome {
protected:
    void SetUp() override {
        ASSERT_FALSE(run("command -v trash-list && command -v trash-restore").empty())
            << "trash-cli is needed for this test (Debian: trash-cli)";
    }

    // The output of a shell command in the made-up world.
    static std::string run(const std::string& command) {
        setenv("HOME", testHome().c_str(), 1);
        setenv("XDG_DATA_HOME", world().dataHome.c_str(), 1);
        setenv("LC_ALL", "C.UTF-8", 1);
        FILE* pipe = popen(command.c_str(), "r");  // NOLINT(cert-env33-c): a fixed command of this test
        std::string printed;
        std::array<char, 4096> buffer{};
        for (std::size_t got = 0; (got = fread(buffer.data(), 1, buffer.size(), pipe)) > 0;) {
            printed.append(buffer.data(), got);
        }
        pclose(pipe);
        return printed;
    }
    // Only of this home, not of the machine's own volumes.
    static std::string list() { return run("trash-list 2>&1 | grep -F '" + testHome().string() + "'"); }

    const fs::path junk = testHome() / "Junk";
};

TEST_F(TrashReadersTest, EachItemIsListedWithItsPlace) {
    const std::vector<std::string> names = {"plain", "with space", "\xC3\xA9t\xC3\xA9 100%", "quote'\"", "#hash?&=+"};
    for (const std::string& name : names) {
        writeFile(junk / name, name);
        ASSERT_EQ(trashing(seen(junk / name)), 0);
    }
    writeFile(junk / "plain", "again");
    ASSERT_EQ(trashing(seen(junk / "plain")), 0);
    const std::string listed = list();
    for (const std::string& name : names) {
        EXPECT_THAT(listed, HasSubstr(" " + (junk / name).string() + "\n"));
    }
    EXPECT_EQ(std::count(listed.begin(), listed.end(), '\n'), 6) << listed;
}

TEST_F(TrashReadersTest, AnotherProgramRestoresByteForByte) {
    writeFile(junk / "folder/inner/file", std::string("\0\xFF\n bytes", 9));
    makeLink(junk / "folder/link", "inner/file");
    setDates(junk / "folder/inner/file", daysAgo(100));
    const auto before = portrait(junk / "folder");
    ASSERT_EQ(trashing(seen(junk / "folder")), 0);
    const std::string printed =
        run("cd '" + junk.string() + "' && echo 0 | trash-restore '" + (junk / "folder").string() + "' 2>&1");
    EXPECT_EQ(portrait(junk / "folder"), before) << printed;
    EXPECT_THAT(list(), IsEmpty());
}

TEST_F(TrashReadersTest, AnUndoLeavesNoGhosts) {
    for (const char* name : {"a", "b", "c"}) {
        writeFile(junk / name, name);
        ASSERT_EQ(trashing(seen(junk / name)), 0);
    }
    for (const char* name : {"a", "c"}) {
        ASSERT_EQ(restoring(homeTrash() / "files" / name, junk / name), 0);
    }
    const std::string listed = list();
    EXPECT_THAT(listed, HasSubstr((junk / "b").string()));
    EXPECT_EQ(std::count(listed.begin(), listed.end(), '\n'), 1) << listed;
}

}  // namespace
}  // namespace vesk

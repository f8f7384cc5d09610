// What programs have in use, as libproc tells it.

#include <gtest/gtest.h>
#include <unistd.h>

#include "darwin/model/processes.h"
#include "platform/system/open_files.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using namespace testing;
using darwin::Process;
using darwin::setProcesses;

OpenFiles openFiles() {
    return lookingAtProcesses()();
}

class UsedFilesTest : public TemporaryHome {
protected:
    UsedFilesTest() {
        makeFile(item() / "deep/er/file");
        makeFile(testHome() / "cache/applications/file");
    }

    static std::filesystem::path item() { return testHome() / "cache/app"; }
    static std::string file() { return (item() / "deep/er/file").string(); }
    static bool isInUse() { return openFiles().use(item()); }

    static void expectInUse(Process process) {
        process.id = 7;
        setProcesses({{.id = 5}, process});
        OpenFiles open = openFiles();
        EXPECT_TRUE(open.use(item()));
        EXPECT_FALSE(open.use(testHome() / "cache/applications"));
        EXPECT_FALSE(open.use(testHome() / "cache/ap"));
    }
};

TEST_F(UsedFilesTest, NothingIsInUseOfNobody) {
    EXPECT_FALSE(isInUse());
}

TEST_F(UsedFilesTest, AnOpenFileIsInUse) {
    expectInUse({.opened = {"/dev/null", file()}});
}

TEST_F(UsedFilesTest, AFileThatIsOnlyWatchedIsNot) {
    setProcesses({{.id = 7, .watched = {file(), item().string()}}});
    EXPECT_FALSE(isInUse());
}

TEST_F(UsedFilesTest, AWorkingFolderIsInUse) {
    expectInUse({.workingFolder = item()});
}

TEST_F(UsedFilesTest, ARunningProgramIsInUse) {
    expectInUse({.program = file()});
}

TEST_F(UsedFilesTest, ABoundSocketIsInUse) {
    expectInUse({.opened = {"/dev/null"}, .boundSockets = {file()}});
}

TEST_F(UsedFilesTest, AMappedFileIsInUse) {
    expectInUse({.mapped = {"/dev/null", "/dev/zero", file()}});
}

TEST_F(UsedFilesTest, AProcessThatRefusesHidesNoOther) {
    setProcesses({{.id = 5, .refuses = true, .opened = {file()}}, {.id = 7}});
    EXPECT_FALSE(isInUse());
    setProcesses({{.id = 5, .refuses = true}, {.id = 7, .opened = {file()}}});
    EXPECT_TRUE(isInUse());
}

TEST_F(UsedFilesTest, ThisProcessIsNoReason) {
    setProcesses({{.id = getpid(), .opened = {file()}}});
    EXPECT_FALSE(isInUse());
}

}  // namespace
}  // namespace vesk

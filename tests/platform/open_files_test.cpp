// What this computer's programs have in use.

#include "platform/system/open_files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <functional>

#include "support/private_mounts.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using namespace testing;

// A process that keeps something in use while this object exists.
class Holder {
public:
    // `hold` runs in the process, and may only make system calls. It returns false if it failed.
    explicit Holder(const std::function<bool()>& hold) {
        int ends[2];
        EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
        process_ = fork();
        if (process_ == 0) {
            const char told = hold() ? 'y' : 'n';
            if (write(ends[1], &told, 1) == 1) {
                pause();
            }
            _exit(0);
        }
        char told = 'n';
        EXPECT_EQ(read(ends[0], &told, 1), 1);
        EXPECT_EQ(told, 'y');
        close(ends[0]);
        close(ends[1]);
    }
    ~Holder() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
    }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

private:
    pid_t process_ = -1;
};

OpenFiles openFiles() {
    return lookingAtProcesses()();
}

class OpenFilesTest : public TemporaryHome {
protected:
    OpenFilesTest() {
        makeFile(item() / "deep/er/file");
        makeFile(testHome() / "cache/applications/file");
    }
    static std::filesystem::path item() { return testHome() / "cache/app"; }
    static std::string file() { return (item() / "deep/er/file").string(); }

    static void expectInUse(const std::function<bool()>& hold) {
        EXPECT_FALSE(openFiles().use(item()));
        {
            const Holder holder(hold);
            OpenFiles open = openFiles();
            EXPECT_TRUE(open.use(item()));
            EXPECT_FALSE(open.use(testHome() / "cache/applications"));
            EXPECT_FALSE(open.use(testHome() / "cache/ap"));
        }
        EXPECT_FALSE(openFiles().use(item()));
    }
};

TEST_F(OpenFilesTest, AnOpenFileIsInUse) {
    expectInUse([] { return open(file().c_str(), O_RDONLY) >= 0; });
    const Holder holder([] { return open(file().c_str(), O_WRONLY) >= 0; });
    EXPECT_TRUE(openFiles().use(file()));
    EXPECT_TRUE(openFiles().use(item().parent_path()));
}

TEST_F(OpenFilesTest, AnOpenFolderIsInUse) {
    expectInUse([] { return open((item() / "deep").c_str(), O_RDONLY | O_DIRECTORY) >= 0; });
}

TEST_F(OpenFilesTest, AWorkingFolderIsInUse) {
    expectInUse([] { return chdir(item().c_str()) == 0; });
}

TEST_F(OpenFilesTest, ARunningProgramIsInUse) {
    std::filesystem::copy_file("/bin/sleep", item() / "tool");
    std::filesystem::permissions(item() / "tool", std::filesystem::perms::owner_all);
    const std::string program = (item() / "tool").string();
    const pid_t process = fork();
    if (process == 0) {
        execl(program.c_str(), "tool", "60", nullptr);
        _exit(1);
    }
    bool seen = false;
    for (int i = 0; i < 500 && !seen; ++i) {  // until the process has become the program
        seen = openFiles().use(item());
    }
    EXPECT_TRUE(seen);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

TEST_F(OpenFilesTest, AMappedFileIsInUseWhoeverClosedIt) {
    expectInUse([] {
        const int opened = open(file().c_str(), O_RDONLY);
        return mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE, opened, 0) != MAP_FAILED && close(opened) == 0;
    });
}

TEST_F(OpenFilesTest, ABoundSocketIsInUse) {
    expectInUse([] {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        // A short path, since a socket's path is limited to about a hundred bytes.
        const std::string path = (item() / "s").string();
        std::memcpy(address.sun_path, path.c_str(), std::min(path.size() + 1, sizeof address.sun_path));
        return bind(socket(AF_UNIX, SOCK_STREAM, 0), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    });
}

TEST_F(OpenFilesTest, AFileReachedThroughALinkIsInUse) {
    makeLink(testHome() / "way", item());
    expectInUse([] { return open((testHome() / "way/deep/er/file").c_str(), O_RDONLY) >= 0; });
    const Holder holder([] { return open(file().c_str(), O_RDONLY) >= 0; });
    makeLink(testHome() / "caches", testHome() / "cache");
    EXPECT_TRUE(openFiles().use(testHome() / "caches/app"));
    // Only the link itself would move, and nobody has that open.
    EXPECT_FALSE(openFiles().use(testHome() / "way"));
}

TEST_F(OpenFilesTest, ADeletedFileStillTellsOfItsFolder) {
    expectInUse([] {
        const std::string path = (item() / "temporary").string();
        return open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600) >= 0 && unlink(path.c_str()) == 0;
    });
}

TEST_F(OpenFilesTest, AFileOpenInAnotherViewOfTheFileSystemsIsInUse) {
    if (!privateMountsAreAllowed()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    makeFolder(testRoot() / "hidden/mnt");
    expectInUse([] {
        return enterPrivateMounts() && mountFolderAgain(item(), testRoot() / "hidden/mnt") &&
               open((testRoot() / "hidden/mnt/deep/er/file").c_str(), O_RDONLY) >= 0;
    });
}

TEST_F(OpenFilesTest, AFileReachedThroughAnotherMountIsInUse) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    makeFolder(testRoot() / "mnt");
    ASSERT_TRUE(mountFolderAgain(item() / "deep", testRoot() / "mnt"));
    expectInUse([] { return open((testRoot() / "mnt/er/file").c_str(), O_RDONLY) >= 0; });
    unmount(testRoot() / "mnt");
}

TEST_F(OpenFilesTest, ALockOfAProcessThatMayNotBeLookedAtCounts) {
    struct stat found {};
    ASSERT_EQ(stat(file().c_str(), &found), 0);
    OpenFiles locked({{found.st_dev, found.st_ino, "", true}});
    EXPECT_TRUE(locked.use(item()));
    EXPECT_TRUE(locked.use(file()));
    EXPECT_FALSE(locked.use(testHome() / "cache/applications"));
    OpenFiles elsewhere({{found.st_dev + 1, found.st_ino, "", true}});
    EXPECT_FALSE(elsewhere.use(item()));
}

TEST_F(OpenFilesTest, ThisProcessIsNoReason) {
    const int opened = open(file().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_GE(opened, 0);
    EXPECT_FALSE(openFiles().use(item()));
    close(opened);
}

TEST_F(OpenFilesTest, AMissingItemIsNotInUse) {
    EXPECT_FALSE(openFiles().use(testHome() / "missing"));
    EXPECT_FALSE(openFiles().use(testHome() / "missing/too"));
}

}  // namespace
}  // namespace vesk

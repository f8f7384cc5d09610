// The Trash without a rename that refuses to replace, as on NFS: a seccomp filter makes that system call fail.

#include <gtest/gtest.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <vector>

#include "platform/trash_fixture.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;

// From here on, this process has no rename that refuses to replace.
void loseExclusiveRename() {
    sock_filter program[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog filter{static_cast<unsigned short>(std::size(program)), program};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0) {
        std::exit(77);
    }
}

// Runs the steps in a process that has lost it; the exit code is the number of the first step that failed.
[[noreturn]] void runWithoutExclusiveRename(const std::vector<std::function<bool()>>& steps) {
    loseExclusiveRename();
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (!steps[i]()) {
            std::_Exit(static_cast<int>(i) + 1);
        }
    }
    std::_Exit(0);
}

TEST_F(TrashTest, WorksWhereNoRenameRefusesToReplace) {
    GTEST_FLAG_SET(death_test_style, "fast");
    writeFile(item, "file");
    writeFile(home / "Junk/folder/inner", "inner");
    makeLink(home / "Junk/link", "nowhere");
    writeFile(files / "item", "older");
    makeFolder(files / "folder");
    EXPECT_EXIT(
        runWithoutExclusiveRename({
            [&] { return trashing(seen(item)) == 0; },
            [&] { return contentOf(files / "item") == "older" && contentOf(files / "item.2") == "file"; },
            [&] { return !isThere(item) && isThere(info / "item.2.trashinfo") && !isThere(info / "item.trashinfo"); },
            [&] { return trashing(seen(home / "Junk/folder")) == 0; },
            [&] { return fs::is_empty(files / "folder") && contentOf(files / "folder.2/inner") == "inner"; },
            [&] { return trashing(seen(home / "Junk/link")) == 0 && fs::is_symlink(files / "link"); },
            [&] { return restoring(files / "item.2", item) == 0 && contentOf(item) == "file"; },
            [&] { return restoring(files / "folder.2", home / "Junk/folder") == 0; },
            [&] { return restoring(files / "link", home / "Junk/link") == 0 && namesIn(info).empty(); },
            [&] { return trashing(seen(home / ".local")) == EINVAL && namesIn(info).empty(); },
        }),
        ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace vesk

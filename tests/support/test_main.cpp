// The main function of all GoogleTest programs.

#include <grp.h>
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "support/temporary_home.h"

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace {

#ifdef __linux__
// After changing its user, a process can no longer open its own files in /proc, which tests of descriptors and mounts
// need.
void unlockOwnFiles() {
    prctl(PR_SET_DUMPABLE, 1);
}
#else
void unlockOwnFiles() {
}
#endif

// Root is never denied a folder, so tests run as an ordinary user.
void becomeOrdinaryUser() {
    if (geteuid() != 0) {
        return;
    }
    const passwd* nobody = getpwnam("nobody");  // NOLINT(concurrency-mt-unsafe): no other thread yet
    if (nobody == nullptr || setgroups(0, nullptr) != 0 || setgid(nobody->pw_gid) != 0 || setuid(nobody->pw_uid) != 0) {
        std::fputs("cannot run the tests as an ordinary user\n", stderr);
        std::exit(2);  // NOLINT(concurrency-mt-unsafe): no other thread yet
    }
    unlockOwnFiles();
}

}  // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (!GTEST_FLAG_GET(list_tests)) {
        becomeOrdinaryUser();
        vesk::testing::testHome();  // sets the made-up world before anything can read the real one
    }
    return RUN_ALL_TESTS();
}

#include "support/private_mounts.h"

#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

namespace vesk::testing {

namespace {

bool write(const char* file, const std::string& text) {
    std::ofstream stream(file);
    stream << text;
    stream.close();
    return stream.good();
}

// A new user namespace gives its maker every capability, also the one to read refused folders, which tests rely on
// being refused.
bool keepOnlyMounting() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    constexpr unsigned mounting = 1U << static_cast<unsigned>(CAP_SYS_ADMIN);
    const __user_cap_data_struct kept[2] = {{mounting, mounting, 0}, {0, 0, 0}};
    return syscall(SYS_capset, &header, kept) == 0;
}

bool enter() {
    const std::string user = std::to_string(getuid());
    const std::string group = std::to_string(getgid());
    return unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 && write("/proc/self/setgroups", "deny") &&
           write("/proc/self/uid_map", user + " " + user + " 1") &&
           write("/proc/self/gid_map", group + " " + group + " 1") && keepOnlyMounting() &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

}  // namespace

bool enterPrivateMounts() {
    static const bool entered = enter();
    return entered;
}

bool privateMountsAreAllowed() {
    const pid_t child = fork();
    if (child == 0) {
        _exit(enter() ? 0 : 1);
    }
    int status = 1;
    return child > 0 && waitpid(child, &status, 0) == child && status == 0;
}

bool mountTemporaryFileSystem(const std::filesystem::path& folder, const std::string& options) {
    return mount("vesk-test", folder.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

bool mountWithoutUseDates(const std::filesystem::path& folder, bool ofFilesEither) {
    return mount("vesk-test", folder.c_str(), "tmpfs", ofFilesEither ? MS_NOATIME : MS_NODIRATIME, "") == 0;
}

bool mountFolderAgain(const std::filesystem::path& shown, const std::filesystem::path& at) {
    return mount(shown.c_str(), at.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

bool remountReadOnly(const std::filesystem::path& folder) {
    return mount(nullptr, folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0;
}

void unmount(const std::filesystem::path& folder) {
    umount2(folder.c_str(), MNT_DETACH);
}

}  // namespace vesk::testing

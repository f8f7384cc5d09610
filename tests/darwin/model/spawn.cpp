// Darwin's posix_spawn(2), by its manual and xnu's kern_exec.c: with POSIX_SPAWN_CLOEXEC_DEFAULT a program gets only
// the descriptors that a file action made or named, and dup2 of a descriptor onto itself does nothing, so that one
// stays closed (posix_spawn_file_actions_addinherit_np(3) is the way to hand it over).

#include "darwin/include/spawn.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <vector>

#include <fcntl.h>

#include "darwin/model/misuse.h"

struct DarwinFileActions {
    struct Action {
        int from;
        int to;
        bool inherit;
    };
    std::vector<Action> actions;
};

struct DarwinSpawnAttributes {
    sigset_t mask;
    sigset_t defaults;
    pid_t group = 0;
    short flags = 0;
};

namespace {

constexpr int mostDescriptors = 1024;

// In the new process; only what a signal handler may do (other threads of the parent may hold any lock).
bool applyActions(const DarwinFileActions& actions, bool closeOthers, int kept) {
    std::array<bool, mostDescriptors> handedOver{};
    for (const DarwinFileActions::Action& action : actions.actions) {
        if (action.inherit) {
            const int flags = fcntl(action.from, F_GETFD);
            if (flags < 0) {
                return false;
            }
            fcntl(action.from, F_SETFD, flags & ~FD_CLOEXEC);
            handedOver[static_cast<std::size_t>(action.from)] = true;
        } else if (action.from == action.to) {
            if (fcntl(action.from, F_GETFD) < 0) {
                return false;
            }
        } else if (dup2(action.from, action.to) < 0) {
            return false;
        } else {
            handedOver[static_cast<std::size_t>(action.to)] = true;
        }
    }
    for (int i = 0; closeOthers && i < mostDescriptors; ++i) {
        if (!handedOver[static_cast<std::size_t>(i)] && i != kept) {
            close(i);
        }
    }
    return true;
}

void applyAttributes(const DarwinSpawnAttributes& attributes) {
    if ((attributes.flags & POSIX_SPAWN_SETPGROUP) != 0) {
        setpgid(0, attributes.group);
    }
    for (int number = 1; (attributes.flags & POSIX_SPAWN_SETSIGDEF) != 0 && number < NSIG; ++number) {
        if (sigismember(&attributes.defaults, number) == 1) {
            std::signal(number, SIG_DFL);
        }
    }
    if ((attributes.flags & POSIX_SPAWN_SETSIGMASK) != 0) {
        sigprocmask(SIG_SETMASK, &attributes.mask, nullptr);
    }
}

[[noreturn]] void becomeProgram(const char* path, const DarwinFileActions& actions,
                                const DarwinSpawnAttributes& attributes, char* const* arguments,
                                char* const* environment, int report) {
    applyAttributes(attributes);
    if (applyActions(actions, (attributes.flags & POSIX_SPAWN_CLOEXEC_DEFAULT) != 0, report)) {
        execve(path, arguments, environment);
    }
    const int failure = errno;
    [[maybe_unused]] const ssize_t written = write(report, &failure, sizeof failure);
    _exit(127);
}

}  // namespace

extern "C" {

int posix_spawn_file_actions_init(posix_spawn_file_actions_t* actions) {
    *actions = new DarwinFileActions;
    return 0;
}

int posix_spawn_file_actions_destroy(posix_spawn_file_actions_t* actions) {
    delete *actions;
    *actions = nullptr;
    return 0;
}

int posix_spawn_file_actions_adddup2(posix_spawn_file_actions_t* actions, int from, int to) {
    (*actions)->actions.push_back({from, to, false});
    return 0;
}

int posix_spawn_file_actions_addinherit_np(posix_spawn_file_actions_t* actions, int descriptor) {
    (*actions)->actions.push_back({descriptor, descriptor, true});
    return 0;
}

int posix_spawnattr_init(posix_spawnattr_t* attributes) {
    *attributes = new DarwinSpawnAttributes;
    return 0;
}

int posix_spawnattr_destroy(posix_spawnattr_t* attributes) {
    delete *attributes;
    *attributes = nullptr;
    return 0;
}

int posix_spawnattr_setsigmask(posix_spawnattr_t* attributes, const sigset_t* mask) {
    (*attributes)->mask = *mask;
    return 0;
}

int posix_spawnattr_setsigdefault(posix_spawnattr_t* attributes, const sigset_t* set) {
    (*attributes)->defaults = *set;
    return 0;
}

int posix_spawnattr_setpgroup(posix_spawnattr_t* attributes, pid_t group) {
    (*attributes)->group = group;
    return 0;
}

int posix_spawnattr_setflags(posix_spawnattr_t* attributes, short flags) {
    (*attributes)->flags = flags;
    return 0;
}

int posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const* arguments, char* const* environment) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        return errno;
    }
    // Out of the way of the descriptors that the actions name.
    const int report = fcntl(ends[1], F_DUPFD_CLOEXEC, 100);
    close(ends[1]);
    const pid_t child = fork();
    if (child == 0) {
        becomeProgram(path, **actions, **attributes, arguments, environment, report);
    }
    close(report);
    int failure = 0;
    if (child < 0 || read(ends[0], &failure, sizeof failure) != static_cast<ssize_t>(sizeof failure)) {
        failure = child < 0 ? errno : 0;
    }
    close(ends[0]);
    if (failure != 0 && child > 0) {
        waitpid(child, nullptr, 0);
    }
    *process = child;
    return failure;
}

char*** _NSGetEnviron() {
    return &environ;
}

int pthread_set_qos_class_self_np(int quality, int relativePriority) {
    if (quality != 0x11 || relativePriority > 0) {
        vesk::darwin::misuse("a thread asks for another quality of service than Vesk's");
    }
    return 0;
}

}  // extern "C"

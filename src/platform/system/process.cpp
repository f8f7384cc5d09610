#include "platform/system/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <set>

#include "platform/files/descriptor.h"
#include "platform/system/descriptor_limit.h"

#ifdef __APPLE__
#include <crt_externs.h>
#else
extern "C" char** environ;  // NOLINT(readability-redundant-declaration): POSIX has every program declare it
#endif

namespace vesk {

namespace {

// A program inherits every descriptor without the close-on-exec mark, also one that another thread is about to mark,
// and would then hold that thread's pipe open. So the mark has to be there from the start.
#ifdef __APPLE__
// macOS cannot mark a pipe while it makes it; instead it closes, for the new program, all that is not handed over.
constexpr short systemFlags = POSIX_SPAWN_CLOEXEC_DEFAULT;

bool makePipe(std::array<int, 2>& ends) {
    return pipe(ends.data()) == 0 && fcntl(ends[0], F_SETFD, FD_CLOEXEC) == 0 &&
           fcntl(ends[1], F_SETFD, FD_CLOEXEC) == 0;
}

// A program's descriptor `to` becomes `from`. To duplicate one onto itself does nothing on macOS: it would stay closed.
int addHandOver(posix_spawn_file_actions_t* actions, int from, int to) {
    return from == to ? posix_spawn_file_actions_addinherit_np(actions, from)
                      : posix_spawn_file_actions_adddup2(actions, from, to);
}

// Where all that is not handed over is closed, standard input has to be handed over, if there is one: where there is
// none, a pipe may have got its number.
int addStandardInput(posix_spawn_file_actions_t* actions) {
    const int flags = fcntl(STDIN_FILENO, F_GETFD);
    const bool isInherited = flags >= 0 && (flags & FD_CLOEXEC) == 0;
    return isInherited ? posix_spawn_file_actions_addinherit_np(actions, STDIN_FILENO) : 0;
}

char** environment() {
    return *_NSGetEnviron();
}
#else
constexpr short systemFlags = 0;

int addHandOver(posix_spawn_file_actions_t* actions, int from, int to) {
    return posix_spawn_file_actions_adddup2(actions, from, to);
}

int addStandardInput(posix_spawn_file_actions_t* /*actions*/) {
    return 0;  // it is inherited
}

bool makePipe(std::array<int, 2>& ends) {
    return pipe2(ends.data(), O_CLOEXEC) == 0;
}

char** environment() {
    return environ;
}
#endif

struct Pipe {
    Descriptor reading;
    Descriptor writing;
};

// Walks on other threads may use up the descriptors for a moment: a tool that is not run for that would be a card that
// vanishes.
std::optional<Pipe> openPipe() {
    std::array<int, 2> ends{};
    if (!patiently([&] { return makePipe(ends); })) {
        return std::nullopt;
    }
    return Pipe{Descriptor(ends[0]), Descriptor(ends[1])};
}

// What becomes of the descriptors, and the attributes, of a program to start.
class SpawnSettings {
public:
    SpawnSettings() {
        posix_spawn_file_actions_init(&actions_);
        posix_spawnattr_init(&attributes_);
    }
    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&actions_);
        posix_spawnattr_destroy(&attributes_);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    bool set(const Pipe& output, const Pipe& errors) {
        sigset_t none;
        sigemptyset(&none);
        // All that can be handled or ignored: an ignored SIGPIPE, say, would be passed on.
        sigset_t ordinary;
        sigfillset(&ordinary);
        sigdelset(&ordinary, SIGKILL);
        sigdelset(&ordinary, SIGSTOP);
        // In this order, and with the output's pipe made first, neither end is replaced before its turn, even where
        // this process has no standard descriptors itself and the pipes got their numbers.
        return addHandOver(&actions_, output.writing.get(), STDOUT_FILENO) == 0 &&
               addHandOver(&actions_, errors.writing.get(), STDERR_FILENO) == 0 && addStandardInput(&actions_) == 0 &&
               posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
               posix_spawnattr_setsigdefault(&attributes_, &ordinary) == 0 &&
               // A group of its own, led by itself, so that it can be ended with all that it started.
               posix_spawnattr_setpgroup(&attributes_, 0) == 0 &&
               posix_spawnattr_setflags(&attributes_,
                                        static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF |
                                                           POSIX_SPAWN_SETPGROUP | systemFlags)) == 0;
    }

    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

// The programs that run, by the process group that each leads. A number stays listed for as long as it can mean nobody
// else: until its process is waited for.
struct Running {
    std::mutex lock;
    std::set<pid_t> groups;
    bool ended = false;
};

// Never destroyed: threads that wait for a program may outlive main.
Running& running() {
    static Running& instance = *new Running;
    return instance;
}

std::optional<pid_t> start(const std::filesystem::path& path, const std::vector<std::string>& arguments,
                           const SpawnSettings& settings) {
    // The call takes the arguments as changeable, though it does not change them.
    std::vector<std::string> words = {path.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    pid_t process = -1;
    const std::lock_guard guard(running().lock);
    if (running().ended || posix_spawn(&process, path.c_str(), settings.actions(), settings.attributes(),
                                       pointers.data(), environment()) != 0) {
        return std::nullopt;
    }
    running().groups.insert(process);
    return process;
}

// Reads on when nothing more is kept, since the program would wait for ever with nobody reading.
std::string readToEnd(const Descriptor& source) {
    std::string read;
    bool dropped = false;
    std::array<char, 65536> block;
    for (;;) {
        const ssize_t got = ::read(source.get(), block.data(), block.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        const std::size_t kept = std::min(static_cast<std::size_t>(got), mostOutputKept - read.size());
        dropped = dropped || kept < static_cast<std::size_t>(got);
        read.append(block.data(), kept);
    }
    if (dropped) {
        read.resize(read.rfind('\n') + 1);  // without any line end, to nothing
    }
    return read;
}

std::int32_t statusAtEnd(pid_t process) {
    // Waits first and takes the number off the list only then, both before it can be given to another process.
    siginfo_t ignored{};
    while (waitid(P_PID, static_cast<id_t>(process), &ignored, WEXITED | WNOWAIT) < 0 && errno == EINTR) {
    }
    const std::lock_guard guard(running().lock);
    running().groups.erase(process);
    int status = 0;
    while (waitpid(process, &status, 0) < 0) {
        if (errno != EINTR) {
            return -1;
        }
    }
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace

std::optional<ProcessResult> runProcess(const std::filesystem::path& path, const std::vector<std::string>& arguments) {
    std::optional<Pipe> output = openPipe();
    std::optional<Pipe> errors = openPipe();
    SpawnSettings settings;
    if (!output || !errors || !settings.set(*output, *errors)) {
        return std::nullopt;
    }
    const std::optional<pid_t> process = start(path, arguments, settings);
    if (!process) {
        return std::nullopt;
    }
    // The reading ends only when no writer is left, this process included.
    output->writing.close();
    errors->writing.close();
    ProcessResult result;
    result.output = readToEnd(output->reading);
    result.status = statusAtEnd(*process);
    return result;
}

void endProcesses() {
    const std::lock_guard guard(running().lock);
    running().ended = true;
    for (const pid_t group : running().groups) {
        kill(-group, SIGKILL);
    }
}

}  // namespace vesk

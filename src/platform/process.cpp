#include "platform/process.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

#include "platform/folder_reader.h"

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

char** environment() {
    return *_NSGetEnviron();
}
#else
constexpr short systemFlags = 0;

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

std::optional<Pipe> openPipe() {
    std::array<int, 2> ends{};
    if (!makePipe(ends)) {
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
        return posix_spawn_file_actions_adddup2(&actions_, output.writing.get(), STDOUT_FILENO) == 0 &&
               posix_spawn_file_actions_adddup2(&actions_, errors.writing.get(), STDERR_FILENO) == 0 &&
               keepStandardInput() && posix_spawnattr_setsigmask(&attributes_, &none) == 0 &&
               posix_spawnattr_setsigdefault(&attributes_, &ordinary) == 0 &&
               posix_spawnattr_setflags(
                   &attributes_, static_cast<short>(POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | systemFlags)) == 0;
    }

    const posix_spawn_file_actions_t* actions() const { return &actions_; }
    const posix_spawnattr_t* attributes() const { return &attributes_; }

private:
    // Where all that is not handed over is closed, standard input has to be handed over (if there is one).
    bool keepStandardInput() {
        return systemFlags == 0 || fcntl(STDIN_FILENO, F_GETFD) < 0 ||
               posix_spawn_file_actions_adddup2(&actions_, STDIN_FILENO, STDIN_FILENO) == 0;
    }

    posix_spawn_file_actions_t actions_{};
    posix_spawnattr_t attributes_{};
};

std::optional<pid_t> start(const std::filesystem::path& path, const std::vector<std::string>& arguments,
                           const SpawnSettings& settings) {
    // The call takes the arguments as changeable, though it does not change them.
    std::vector<std::string> words = {path.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    pid_t process = -1;
    if (posix_spawn(&process, path.c_str(), settings.actions(), settings.attributes(), pointers.data(),
                    environment()) != 0) {
        return std::nullopt;
    }
    return process;
}

std::string readToEnd(const Descriptor& source) {
    std::string read;
    std::array<char, 64 * 1024> block;
    for (;;) {
        const ssize_t got = ::read(source.get(), block.data(), block.size());
        if (got > 0) {
            read.append(block.data(), static_cast<std::size_t>(got));
        } else if (got == 0 || errno != EINTR) {
            return read;
        }
    }
}

std::int32_t statusAtEnd(pid_t process) {
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

}  // namespace vesk

#include "support/child_program.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#ifdef __APPLE__
extern "C" char** environ;
#endif

namespace vesk::testing {

namespace {

using Clock = std::chrono::steady_clock;

std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

// Reads until the program closes its output. Returns false if the time runs out first.
bool readUntil(Clock::time_point deadline, int source, std::string& output) {
    std::array<char, 65536> block{};
    for (;;) {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd watched{source, POLLIN, 0};
        if (left.count() <= 0 || poll(&watched, 1, static_cast<int>(left.count())) == 0) {
            return false;
        }
        const ssize_t got = read(source, block.data(), block.size());
        if (got > 0) {
            output.append(block.data(), static_cast<std::size_t>(got));
        } else if (got == 0 || errno != EINTR) {
            return true;
        }
    }
}

}  // namespace

ProgramRun runProgram(const std::string& path, const std::vector<std::string>& arguments,
                      const std::vector<std::string>& environment, std::chrono::milliseconds limit) {
    ProgramRun run;
    std::vector<std::string> words = {path};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> variables = environment;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        variables.emplace_back(*variable);
    }
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        return run;
    }
    fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    fcntl(ends[1], F_SETFD, FD_CLOEXEC);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    pid_t process = -1;
    const int failure =
        posix_spawn(&process, path.c_str(), &actions, nullptr, pointersTo(words).data(), pointersTo(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    if (failure == 0) {
        run.outOfTime = !readUntil(Clock::now() + limit, ends[0], run.output);
        if (run.outOfTime) {
            kill(process, SIGKILL);
        }
        int status = 0;
        waitpid(process, &status, 0);
        run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        run.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }
    close(ends[0]);
    return run;
}

}  // namespace vesk::testing

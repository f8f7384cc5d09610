#include "support/killed_process.h"

#include <signal.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace vesk::testing {

namespace {

// An invalid signal number for kill(), so that only startCountingCalls makes this call.
constexpr unsigned long markerSignal = 4711;

constexpr int syscallStop = SIGTRAP | 0x80;

long traced(__ptrace_request request, pid_t thread, unsigned long address, void* data) {
    return ptrace(request, thread, address, data);
}

void* asData(unsigned long number) {
    return reinterpret_cast<void*>(number);  // NOLINT(performance-no-int-to-ptr): what ptrace takes
}

// Traces the threads of one process from call to call.
class Tracer {
public:
    Tracer(pid_t process, int number) : process_(process), number_(number) {}

    KilledRun run() {
        constexpr unsigned long options =
            PTRACE_O_TRACESYSGOOD | PTRACE_O_TRACECLONE | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK | PTRACE_O_EXITKILL;
        int status = 0;
        waitpid(process_, &status, 0);  // its own SIGSTOP
        traced(PTRACE_SETOPTIONS, process_, 0, asData(options));
        traced(PTRACE_SYSCALL, process_, 0, nullptr);
        for (;;) {
            const pid_t thread = waitpid(-1, &status, __WALL);
            if (thread < 0) {
                return result_;
            }
            if (WIFEXITED(status) || WIFSIGNALED(status)) {
                if (thread == process_) {
                    result_.succeeded = WIFEXITED(status) && WEXITSTATUS(status) == 0;
                    return result_;
                }
                continue;
            }
            handleStop(thread, status);
        }
    }

private:
    void handleStop(pid_t thread, int status) {
        const int signal = WSTOPSIG(status);
        if (signal == syscallStop) {
            handleCall(thread);
        }
        // Stops caused by tracing, and the initial stop of a new thread, are not meant for the process.
        const bool isTracing = signal == syscallStop || (status >> 16) != 0 || signal == SIGSTOP;
        traced(PTRACE_SYSCALL, thread, 0, asData(isTracing ? 0UL : static_cast<unsigned long>(signal)));
    }

    void handleCall(pid_t thread) {
        __ptrace_syscall_info info{};
        if (traced(PTRACE_GET_SYSCALL_INFO, thread, sizeof info, &info) <= 0 || info.op != PTRACE_SYSCALL_INFO_ENTRY) {
            return;
        }
        if (info.entry.nr == SYS_kill && info.entry.args[1] == markerSignal) {
            counting_ = true;
        } else if (counting_ && ++result_.calls == number_) {
            kill(process_, SIGKILL);
            result_.killed = true;
        }
    }

    pid_t process_;
    int number_;
    bool counting_ = false;
    KilledRun result_;
};

}  // namespace

void startCountingCalls() {
    syscall(SYS_kill, getpid(), markerSignal);
}

KilledRun runKilledAt(int number, const std::function<bool()>& work) {
    const pid_t process = fork();
    if (process == 0) {
        traced(PTRACE_TRACEME, 0, 0, nullptr);
        raise(SIGSTOP);
        _exit(work() ? 0 : 1);
    }
    return Tracer(process, number).run();
}

bool runApart(const std::function<bool()>& work) {
    const pid_t process = fork();
    if (process == 0) {
        _exit(work() ? 0 : 1);
    }
    int status = 0;
    return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

}  // namespace vesk::testing

#include "platform/system/termination.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>

namespace vesk {

namespace {

int signalPipe[2] = {-1, -1};

// All that a signal handler may do. If the pipe is full, the signal is already noticed.
void passOn(int /*signal*/) {
    const int kept = errno;
    const char byte = 0;
    (void)!::write(signalPipe[1], &byte, 1);
    errno = kept;
}

}  // namespace

int terminationSignalDescriptor() {
    if (::pipe(signalPipe) != 0) {
        return -1;
    }
    for (const int end : signalPipe) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    struct sigaction action {};
    action.sa_handler = passOn;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction before {};
        if (sigaction(signal, &action, &before) != 0) {
            return -1;
        }
        // Who started the program may have it ignore some, as nohup does.
        if (before.sa_handler == SIG_IGN) {
            sigaction(signal, &before, nullptr);
        }
    }
    return signalPipe[0];
}

void outliveFailedWrites() {
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        std::signal(signal, SIG_IGN);
    }
}

void terminateNow(int status) {
    std::fflush(stdout);
    std::_Exit(status);
}

}  // namespace vesk

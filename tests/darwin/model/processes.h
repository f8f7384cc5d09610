// The processes of the model, of which libproc tells. Beliefs, by their source, xnu's proc_info.c: a call without a
// buffer answers with room for more than there is; a call for which the buffer is too small fails; other users'
// processes refuse.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace vesk::darwin {

struct Process {
    pid_t id = 0;
    /// Another user's, which tells nothing.
    bool refuses = false;
    std::string program = {};
    std::string workingFolder = {};
    std::vector<std::string> opened = {};
    /// Opened only to be told of changes (O_EVTONLY).
    std::vector<std::string> watched = {};
    std::vector<std::string> boundSockets = {};
    std::vector<std::string> mapped = {};
};

/// The processes that there are besides this one.
void setProcesses(std::vector<Process> processes);

}  // namespace vesk::darwin

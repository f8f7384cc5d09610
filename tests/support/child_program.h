// Another program, run to its end by a test.
#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace vesk::testing {

struct ProgramRun {
    /// Exit status; -1 if a signal ended it.
    int status = -1;
    /// The signal that ended it, or 0.
    int signal = 0;
    /// Whether it was killed for exceeding its time limit.
    bool outOfTime = false;
    /// What it wrote to standard output.
    std::string output;
};

/// Runs a program with these arguments and, added to this process's environment, these "NAME=VALUE" lines. Its standard
/// error is the test's.
ProgramRun runProgram(const std::string& path, const std::vector<std::string>& arguments,
                      const std::vector<std::string>& environment = {},
                      std::chrono::milliseconds limit = std::chrono::seconds(10));

}  // namespace vesk::testing

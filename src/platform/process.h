// Running other programs. Only rules/run_tool starts any. Callable from several threads at once: no descriptor of one
// call reaches a program that another one starts.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

struct ProcessResult {
    /// The exit status; the signal's number when a signal ended the program; -1 when it cannot be told.
    std::int32_t status = -1;
    /// The bytes it wrote to its standard output.
    std::string output;
};

/// Runs the program at `path` (no shell, no search) with `arguments`, in this environment and working folder, with no
/// signal blocked or ignored; waits for its end. What it writes to its standard error goes into a pipe that nobody
/// reads, so a program that writes more there than a pipe holds waits until it is ended. Absent when it cannot be
/// started.
std::optional<ProcessResult> runProcess(const std::filesystem::path& path, const std::vector<std::string>& arguments);

}  // namespace vesk

// Running other programs. Only rules/run_tool starts any. Callable from several threads at once: no descriptor of one
// call reaches a program that another one starts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

struct ProcessResult {
    /// The exit status; the signal's number when a signal ended the program; -1 when it cannot be told.
    std::int32_t status = -1;
    /// The bytes it wrote to its standard output; of more than `mostOutputKept`, the whole lines among the first ones.
    std::string output;
};

/// Bytes, a thousand times what any tool has to say. The rest is read and dropped, so that a tool gone mad can neither
/// use up the memory nor be cut off in the middle of a line that means something else when it is shorter.
inline constexpr std::size_t mostOutputKept = std::size_t{64} << 20U;

/// Runs the program at `path` (no shell, no search) with `arguments`, in this environment and working folder, with no
/// signal blocked or ignored, as the leader of a process group of its own; waits until its output is closed and it has
/// ended, however long that takes. What it writes to its standard error goes into a pipe that nobody
/// reads, so a program that writes more there than a pipe holds waits until it is ended. Absent when it cannot be
/// started.
std::optional<ProcessResult> runProcess(const std::filesystem::path& path, const std::vector<std::string>& arguments);

/// Ends every program that runs, with what it started, and has no further one start. For a program on its way out:
/// nothing that it started is left behind. Callable from any thread.
void endProcesses();

}  // namespace vesk

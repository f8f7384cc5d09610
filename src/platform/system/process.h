// Runs other programs, for rules/run_tool.cpp (docs/decisions/own-and-borrowed.md). Callable from several threads at
// once: no program inherits the descriptors of another call.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

struct ProcessResult {
    /// The exit status; the signal's number if a signal ended the program; -1 if unknown.
    std::int32_t status = -1;
    /// What it wrote to its standard output; beyond `mostOutputKept`, only the whole lines within that limit.
    std::string output;
};

/// In bytes; a thousand times what any tool writes. The rest is read and dropped, so that a runaway tool cannot use up
/// memory. No line is cut, since a shorter line may mean something else.
inline constexpr std::size_t mostOutputKept = std::size_t{64} << 20U;

/// Runs the program at `path` (no shell, no PATH search) with `arguments`, in this environment and working folder, with
/// no signal blocked or ignored, as the leader of its own process group. Waits until its output is closed and it has
/// ended, however long that takes. Its standard error is a pipe that nobody reads, so a program that fills that pipe
/// blocks until it is ended. Absent if it cannot be started.
std::optional<ProcessResult> runProcess(const std::filesystem::path& path, const std::vector<std::string>& arguments);

/// Kills every running program's process group, and prevents further ones from starting. Call it when quitting, to
/// leave no tool behind. Callable from any thread.
void endProcesses();

}  // namespace vesk

// Running the system's own tools.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vesk {

struct ToolResult {
    /// The exit status; the signal's number if a signal ended the tool; -1 if it could not be started.
    std::int32_t status = -1;
    /// What it wrote to its standard output, as valid UTF-8; limited as in platform/system/process.h.
    std::string output;
};

/// Runs the tool at `path` (see World::rooted) and waits until it has ended, however long that takes: only the tool
/// knows how long it needs. Its standard error is not read. Never throws. Callable from several threads at once, but
/// not from the main thread, which must not wait.
ToolResult runTool(const std::filesystem::path& path, const std::vector<std::string>& args);

}  // namespace vesk

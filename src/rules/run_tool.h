// Running the system's own tools.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vesk {

struct ToolResult {
    /// The exit status (a signal's number when a signal ended the tool); -1 when it could not be started.
    std::int32_t status = -1;
    /// What it wrote to its standard output, as UTF-8: invalid bytes are replaced. No more than a mad tool's first
    /// `mostOutputKept` bytes (platform/system/process.h).
    std::string output;
};

/// Runs the tool at `path` (a place of the world in force, see World::rooted) and waits for its end. Its error output
/// is dropped. There is no limit of time: only the tool knows how long it needs. Never throws; callable from several
/// threads at once, on any but the main thread, which must not wait.
ToolResult runTool(const std::filesystem::path& path, const std::vector<std::string>& args);

}  // namespace vesk

#include "rules/run_tool.h"

#include "platform/system/process.h"
#include "platform/text.h"

namespace vesk {

ToolResult runTool(const std::filesystem::path& path, const std::vector<std::string>& args) {
    const std::optional<ProcessResult> ended = runProcess(path, args);
    return ended ? ToolResult{ended->status, decodedUtf8(ended->output)} : ToolResult{};
}

}  // namespace vesk

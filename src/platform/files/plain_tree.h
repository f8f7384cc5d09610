// Whether a folder holds nothing but files, folders and links. Callable from any thread.
#pragma once

#include <filesystem>

namespace vesk {

enum class TreeContent {
    /// Files, folders and links alone.
    plain,
    /// A socket, a pipe, a device or a mount is among it: something is at work there.
    special,
    /// Nothing of that kind was met, but a part may not be read.
    refused,
};

/// Looks at the kinds of all items below a folder, at any depth, without following links or leaving a trace. A folder
/// that vanishes meanwhile holds nothing.
TreeContent contentOfTree(const std::filesystem::path& folder);

}  // namespace vesk

// Whether a folder contains only files, folders and links. For rules/place_search.cpp; callable from any thread.
#pragma once

#include <filesystem>

namespace vesk {

enum class TreeContent {
    /// Only files, folders and links.
    plain,
    /// There is a socket, a pipe, a device or a mount: something is using the folder.
    special,
    /// None of those was found, but a part could not be read.
    denied,
};

/// Checks the kinds of all items below a folder, at any depth, without following links or leaving a trace. A folder
/// that vanishes meanwhile counts as empty.
TreeContent contentOfTree(const std::filesystem::path& folder);

}  // namespace vesk

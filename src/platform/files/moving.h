// Moving an item, and making the folders it needs. Callable from any thread.
#pragma once

#include <filesystem>

namespace vesk {

/// Moves an item from one open folder to another, or within one, under a new name: by one rename, never over anything
/// (EEXIST), never to another file system (EXDEV). Returns 0, or the errno value of the failure; nothing has moved
/// then.
int moveWithoutOverwriting(int fromFolder, const char* name, int toFolder, const char* newName);

/// Makes a folder and those above it that are missing, each with this mode less the user's mask. Returns 0 when the
/// folder stands, or the errno value of the failure.
int makeFolders(const std::filesystem::path& folder, unsigned mode);

}  // namespace vesk

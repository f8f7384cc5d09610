// Moves items and creates folders. Callable from any thread.
#pragma once

#include <filesystem>

namespace vesk {

/// Moves an item from one open folder to another, or within one, under a new name: by one rename (where the file system
/// cannot refuse to overwrite, a file is linked and unlinked), never over anything (EEXIST), never to another file
/// system (EXDEV). Returns 0, or an errno value if nothing has moved.
int moveWithoutOverwriting(int fromFolder, const char* name, int toFolder, const char* newName);

/// Creates a folder and its missing parents, with this mode less the umask. Returns 0 if the folder exists afterwards,
/// or an errno value.
int makeFolders(const std::filesystem::path& folder, unsigned mode);

}  // namespace vesk

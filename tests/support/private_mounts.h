// File systems of a test's own, seen by no other process. macOS has no such thing: tests that need it are skipped
// there.
#pragma once

#include <filesystem>
#include <string>

namespace vesk::testing {

/// Takes this process into a mount namespace of its own. Returns false where the system forbids that to ordinary
/// users, or when the process already has other threads. Works again after it has worked once.
bool enterPrivateMounts();

/// Whether a child of this process could enter such a namespace. Changes nothing.
bool privateMountsAreAllowed();

/// Mounts an empty file system in memory at an existing folder, with the mount options given ("size=64k", "ro").
/// Returns false when it cannot.
bool mountTemporaryFileSystem(const std::filesystem::path& folder, const std::string& options = "");

/// The same with one that keeps no dates of last use, of folders or of files either.
bool mountWithoutUseDates(const std::filesystem::path& folder, bool ofFilesEither);

/// Shows the folder `shown` at the existing folder `at` as well (a bind mount).
bool mountFolderAgain(const std::filesystem::path& shown, const std::filesystem::path& at);

/// Lets nothing be changed any more in a folder that is mounted.
bool remountReadOnly(const std::filesystem::path& folder);

void unmount(const std::filesystem::path& folder);

}  // namespace vesk::testing

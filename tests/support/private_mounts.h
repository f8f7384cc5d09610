// Mounts that no other process sees. macOS has no such thing: tests that need them are skipped there.
#pragma once

#include <filesystem>
#include <string>

namespace vesk::testing {

/// Moves this process into its own mount namespace. Returns false where the system forbids that to ordinary
/// users, or when the process already has other threads. Works again after it has worked once.
bool enterPrivateMounts();

/// Whether a child of this process could enter such a namespace. Changes nothing.
bool privateMountsAreAllowed();

/// Mounts an empty file system in memory at an existing folder, with the mount options given ("size=64k", "ro").
/// Returns false on failure.
bool mountTemporaryFileSystem(const std::filesystem::path& folder, const std::string& options = "");

/// The same with one that keeps no dates of last use, of folders or of files either.
bool mountWithoutUseDates(const std::filesystem::path& folder, bool ofFilesEither);

/// Shows the folder `shown` at the existing folder `at` as well (a bind mount).
bool mountFolderAgain(const std::filesystem::path& shown, const std::filesystem::path& at);

/// Makes a mounted folder read-only.
bool remountReadOnly(const std::filesystem::path& folder);

void unmount(const std::filesystem::path& folder);

}  // namespace vesk::testing

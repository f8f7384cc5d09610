// Mounts that no other process sees. macOS has none; tests that need them are skipped there.
#pragma once

#include <filesystem>
#include <string>

namespace vesk::testing {

/// Moves this process into its own mount namespace. Returns false if the system does not allow ordinary users to do
/// that, or if the process already has other threads. May be called again.
bool enterPrivateMounts();

/// Whether a child of this process could enter such a namespace. Changes nothing.
bool privateMountsAreAllowed();

/// Mounts an empty file system in memory at an existing folder, with the mount options given ("size=64k", "ro").
/// Returns false on failure.
bool mountTemporaryFileSystem(const std::filesystem::path& folder, const std::string& options = "");

/// The same with one that records no access dates of folders and, with `ofFilesEither`, none of files.
bool mountWithoutUseDates(const std::filesystem::path& folder, bool ofFilesEither);

/// Mounts the folder `shown` at the existing folder `at` too (a bind mount).
bool mountFolderAgain(const std::filesystem::path& shown, const std::filesystem::path& at);

/// Makes a mounted folder read-only.
bool remountReadOnly(const std::filesystem::path& folder);

void unmount(const std::filesystem::path& folder);

}  // namespace vesk::testing

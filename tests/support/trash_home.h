// Shared by the tests of the Trash: the state of items, and the home Trash of the made-up world.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include "platform/files/identity.h"
#include "platform/trash/trash.h"
#include "platform/world.h"
#include "support/stat_times.h"
#include "support/temporary_home.h"

namespace vesk::testing {

/// Whether anything has this name, including a dangling link.
inline bool isThere(const std::filesystem::path& path) {
    struct stat found {};
    return lstat(path.c_str(), &found) == 0;
}

inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline std::vector<std::string> namesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    std::error_code ignored;
    for (const auto& item : std::filesystem::directory_iterator(folder, ignored)) {
        names.push_back(item.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

inline unsigned modeOf(const std::filesystem::path& path) {
    struct stat found {};
    return lstat(path.c_str(), &found) == 0 ? found.st_mode & 07777U : 0;
}

/// Everything that a rename must not change in an item: kind, mode, dates, size, content or target, by path relative to
/// the item.
inline std::map<std::string, std::string> portrait(const std::filesystem::path& item) {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> seen;
    const auto add = [&](const fs::path& path) {
        struct stat found {};
        ASSERT_EQ(lstat(path.c_str(), &found), 0) << path;
        std::string text = std::to_string(found.st_mode) + " " + std::to_string(found.st_ino) + " " +
                           std::to_string(modified(found).tv_sec) + "." + std::to_string(modified(found).tv_nsec) + " ";
        if (S_ISREG(found.st_mode)) {
            text += contentOf(path);
        } else if (S_ISLNK(found.st_mode)) {
            text += fs::read_symlink(path).string();
        }
        seen[path.lexically_relative(item).string()] = text;
    };
    if (!isThere(item)) {
        return seen;
    }
    add(item);
    std::error_code ignored;
    if (fs::is_directory(fs::symlink_status(item))) {
        for (const auto& inner : fs::recursive_directory_iterator(item, ignored)) {
            add(inner.path());
        }
    }
    return seen;
}

inline std::filesystem::path homeTrash() {
    return world().dataHome / "Trash";
}

/// The item as a scan would see it now.
inline SeenItem seen(const std::filesystem::path& item) {
    return {item, folderIdentity(item.parent_path())};
}

/// The errno value with which the Trash refuses an item; 0 if it was moved.
inline std::int64_t trashing(const SeenItem& item) {
    const TrashOutcome outcome = moveToTrash(item);
    return outcome.error ? outcome.error->code : 0;
}

/// The errno value with which restoring an item fails; 0 if it was restored. Uses only its record, unless an identity
/// is given.
inline std::int64_t restoring(const std::filesystem::path& trashed, const std::filesystem::path& original,
                              const std::optional<TrashedIdentity>& identity = std::nullopt) {
    const std::optional<PlatformError> error = restoreItem({trashed, original, now(), identity});
    syncMoves({trashed});
    forgetReturned({trashed, original, now(), identity});
    return error ? error->code : 0;
}

}  // namespace vesk::testing

// What this computer's programs have in use: open and mapped files, working folders, roots, executables, bound sockets
// and locked files. One look at all processes answers for any number of items, and the answer is as old as the look. It
// locks nothing: a program that opens something a moment later is not noticed.
//
// Called by a clean's worker, on its thread. Each object is used by one thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/system/open_files_system.h"

namespace vesk {

/// One thing that a process has in use, as the system reports it.
struct UsedFile {
    std::uint64_t device = 0;
    /// 0 for a deleted file.
    std::uint64_t inode = 0;
    /// Its path in the process's mount namespace, which may differ from this process's; empty if unknown.
    std::string path;
    /// Whether stat reports the same `device`; for mappings on btrfs it does not.
    bool deviceIsCertain = true;
};

/// The locks of all processes, as the system lists them. Linux waits some 10 ms for a list, so looks that follow each
/// other use one for a second.
struct LockList {
    std::string text;
    std::chrono::steady_clock::time_point validUntil;
};

/// Lists what other processes have in use. Processes that this user may not inspect count as using nothing. Returns
/// false if the look failed as a whole.
bool listUsedFiles(std::vector<UsedFile>& used, LockList& locks);

class OpenFiles {
public:
    explicit OpenFiles(std::vector<UsedFile> used);

    /// Whether a process has this item, or anything below it, in use. Compares paths or, if those are not enough
    /// (another mount namespace, another mount of the same folder, a file known only by its inode), device and inode of
    /// everything in the item.
    bool use(const std::filesystem::path& item);

private:
    struct Placed {
        FilePlace place;
        std::string path;
    };
    using Numbers = std::set<std::pair<std::uint64_t, std::uint64_t>>;

    // A folder of items.
    struct Folder {
        // Its path without links.
        std::string path;
        // Whether nothing can be in use in its items unless a path says so.
        bool pathsAreEnough;
    };

    const Folder& folderAt(std::string_view path);
    const Numbers& doubtful(std::uint64_t device, std::uint64_t mount);

    // Files in use whose path in this process is known, sorted by path.
    std::vector<Placed> placed_;
    // Device and inode of those whose path is not known.
    Numbers unplaced_;
    // The same by mount: a file on another mount of the device may be here too.
    std::map<std::pair<std::uint64_t, std::uint64_t>, Numbers> doubtful_;
    std::map<std::string, Folder, std::less<>> folders_;
};

/// A function that looks at all processes at each call; if a look fails as a whole, nothing is in use. It is used by
/// one thread at a time.
std::function<OpenFiles()> lookingAtProcesses();

}  // namespace vesk

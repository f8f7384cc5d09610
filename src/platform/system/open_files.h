// What the programs of this computer have in use: open, mapped into memory, as their working folder, root or
// executable, as a bound socket or under a lock. One look at all processes answers for any number of items; the answer
// is as old as that look. It is a courtesy and no lock: who opens something a moment later is not seen.
//
// Called by the worker of a clean, on its thread. Each object is used by one thread.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/system/open_files_system.h"

namespace vesk {

/// One thing that a process has in use, as the system tells it.
struct UsedFile {
    std::uint64_t device = 0;
    /// 0 for a file that no folder has any more.
    std::uint64_t inode = 0;
    /// Its path in the process's own view of the file systems, which may not be this one's; empty when it is not told.
    std::string path;
    /// Whether `device` is what a look at the file tells too; of mappings on btrfs it is not.
    bool deviceIsCertain = true;
};

/// Everything that processes other than this one have in use, as far as this user may look. Processes that may not be
/// looked at count as using nothing. Returns false, having found nothing to believe, when there was no look at all.
bool listUsedFiles(std::vector<UsedFile>& used);

class OpenFiles {
public:
    /// Looks at all processes now.
    OpenFiles();
    /// Of what was found elsewhere; for tests.
    explicit OpenFiles(std::vector<UsedFile> used);

    /// Whether a process has this item, or anything below it, in use. By the path where that tells; where it does not
    /// (another view of the file systems, another mount of the same folder, a file known only by its number), by device
    /// and number of what lies in the item. False when the look failed as a whole: then nothing is known.
    bool use(const std::filesystem::path& item);

private:
    struct Placed {
        FilePlace place;
        std::string path;
    };
    using Numbers = std::set<std::pair<std::uint64_t, std::uint64_t>>;

    void sort(std::vector<UsedFile> used);
    const std::string& resolvedFolder(const std::filesystem::path& folder);
    const Numbers& doubtful(std::uint64_t device, std::uint64_t mount);

    // Where used files lie as this process sees them, sorted by path.
    std::vector<Placed> placed_;
    // Device and inode of those that lie nobody knows where.
    Numbers unplaced_;
    // The same for one mount of a device: what lies on another mount of it may lie here as well.
    std::map<std::pair<std::uint64_t, std::uint64_t>, Numbers> doubtful_;
    std::map<std::filesystem::path, std::string> resolved_;
};

}  // namespace vesk

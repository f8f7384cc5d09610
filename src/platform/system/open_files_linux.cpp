// Linux lists everything in /proc (proc(5)), as text or as links to what is in use. A link's text is the path in the
// process's mount namespace; following it leads to the file itself.

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <iterator>
#include <string_view>
#include <unordered_set>

#include "platform/files/content.h"
#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/system/open_files.h"
#include "platform/system/open_files_system.h"
#include "platform/text.h"
#include "platform/threads/work_sharing.h"

namespace vesk {

namespace {

constexpr std::size_t mostText = std::size_t{256} << 20U;
constexpr unsigned wantedOfUsed = STATX_TYPE | STATX_INO | STATX_NLINK | STATX_MNT_ID;

std::uint64_t usedDevice(const struct statx& found) {
    return makedev(found.stx_dev_major, found.stx_dev_minor);
}

// The whole text of a file in /proc, which reports no size; empty if it may not be read.
std::string textOf(int folder, const char* name) {
    const Descriptor file(openat(folder, name, O_RDONLY | O_CLOEXEC));
    std::string text;
    if (file) {
        readAll(file.get(), mostText, text);
    }
    return text;
}

template <typename Visit>
void forEachLine(std::string_view text, Visit visit) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        visit(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

// Removes and returns the next part of a line, up to a blank.
std::string_view nextPart(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const std::size_t end = std::min(line.find(' '), line.size());
    const std::string_view part = line.substr(0, end);
    line.remove_prefix(end);
    return part;
}

template <typename Number>
bool readNumber(std::string_view text, Number& number, int base) {
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    return failure == std::errc() && end == text.data() + text.size();
}

// Parses "MAJOR:MINOR" in hexadecimal.
bool readDevice(std::string_view text, std::uint64_t& device) {
    const std::size_t colon = std::min(text.find(':'), text.size());
    unsigned major = 0;
    unsigned minor = 0;
    if (colon == text.size() || !readNumber(text.substr(0, colon), major, 16) ||
        !readNumber(text.substr(colon + 1), minor, 16)) {
        return false;
    }
    device = makedev(major, minor);
    return true;
}

// Collects what processes use, each file once per path. Each thread of a look has one.
class ProcessReader {
public:
    std::vector<UsedFile> used;
    /// The numbers of the processes that this user may inspect.
    std::unordered_set<std::string> lookable;

    void readProcess(int processes, const char* number) {
        const Descriptor process(openat(processes, number, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!process) {
            return;
        }
        for (const char* link : {"cwd", "root", "exe"}) {
            addLink(process.get(), link);
        }
        const Descriptor files(openat(process.get(), "fd", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!files) {
            return;
        }
        readNames(files.get(), [&](const ListedItem& item) { addLink(files.get(), item.name); });
        lookable.insert(number);
        addMappings(textOf(process.get(), "maps"));
    }

private:
    void addLink(int folder, const char* link) {
        struct statx found {};
        if (statx(folder, link, AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT, wantedOfUsed, &found) != 0 ||
            S_ISSOCK(found.stx_mode) || S_ISCHR(found.stx_mode)) {
            return;
        }
        // A file with only one name was already added under that.
        const bool hasOneName = S_ISDIR(found.stx_mode) || found.stx_nlink == 1;
        const auto isNew = linked_.insert({usedDevice(found), found.stx_ino, found.stx_mnt_id}).second;
        if (hasOneName && !isNew) {
            return;
        }
        std::array<char, PATH_MAX> text;
        const ssize_t length = readlinkat(folder, link, text.data(), text.size());
        // "pipe:[1]", "anon_inode:x" and memfds are not in any folder.
        if (length <= 0 || text[0] != '/') {
            return;
        }
        UsedFile file{usedDevice(found), found.stx_nlink == 0 ? 0 : found.stx_ino,
                      std::string(text.data(), static_cast<std::size_t>(length))};
        if (hasOneName) {
            used.push_back(std::move(file));
        } else {
            add(std::move(file));
        }
    }

    // ADDRESSES PERMISSIONS OFFSET DEVICE INODE PATH. Programs share most of their mappings, so a line seen before,
    // apart from its addresses, is skipped as early as possible.
    void addMappings(std::string_view text) {
        forEachLine(text, [&](std::string_view line) {
            const std::size_t slash = line.find('/');
            if (slash == std::string_view::npos) {
                return;
            }
            // Memory files and shared memory do not have real paths.
            const std::string_view path = line.substr(slash);
            if (path.starts_with("/memfd:") || path.starts_with("/SYSV") || path.starts_with("/dev/zero")) {
                return;
            }
            nextPart(line);
            nextPart(line);
            nextPart(line);
            line.remove_prefix(1);
            if (!mappings_.insert(std::string(line)).second) {
                return;
            }
            UsedFile file;
            const bool hasDevice = readDevice(nextPart(line), file.device);
            if (hasDevice && readNumber(nextPart(line), file.inode, 10) && file.inode != 0) {
                file.path = path;
                // It is not known which of its names was deleted, nor whether it has others.
                file.inode = path.ends_with(" (deleted)") ? 0 : file.inode;
                file.deviceIsCertain = false;
                add(std::move(file));
            }
        });
    }

    void add(UsedFile file) {
        if (known_.insert(std::to_string(file.device) + ":" + std::to_string(file.inode) + ":" + file.path).second) {
            used.push_back(std::move(file));
        }
    }

    std::unordered_set<std::string> known_;
    std::unordered_set<std::string> mappings_;
    // Device, inode and mount of the links' targets so far.
    using Target = std::array<std::uint64_t, 3>;
    struct HashTarget {
        std::size_t operator()(const Target& target) const {
            return static_cast<std::size_t>(target[1] * 31 + target[0] * 7 + target[2]);
        }
    };
    std::unordered_set<Target, HashTarget> linked_;
};

class ProcessTable {
public:
    explicit ProcessTable(std::vector<UsedFile>& used) : used_(used) {}

    bool look(LockList& locks) {
        const Descriptor processes(open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (!processes) {
            return false;
        }
        const std::string own = std::to_string(getpid());
        bool metItself = false;
        std::vector<std::string> numbers;
        readNames(processes.get(), [&](const ListedItem& item) {
            const std::string_view name = item.name;
            if (name == own) {
                metItself = true;
            } else if (name.front() >= '0' && name.front() <= '9') {
                numbers.emplace_back(name);
            }
        });
        lookAtAll(processes.get(), numbers);
        addSockets(textOf(processes.get(), "net/unix"));
        if (const auto now = std::chrono::steady_clock::now(); now >= locks.validUntil) {
            locks = {textOf(processes.get(), "locks"), now + std::chrono::seconds(1)};
        }
        addLocks(locks.text, own);
        return metItself;
    }

private:
    // Most of the time goes into the mappings, which the kernel has to format, so all cores share the work.
    void lookAtAll(int processes, const std::vector<std::string>& numbers) {
        constexpr std::size_t batch = 8;
        std::deque<ProcessReader> readers;  // a deque: threads keep pointers into it while it grows
        shareBatches<ProcessReader*>(
            numbers.size(), batch, [&] { return &readers.emplace_back(); },
            [&](std::size_t first, std::size_t last, ProcessReader* reader) {
                for (std::size_t i = first; i < last; ++i) {
                    reader->readProcess(processes, numbers[i].c_str());
                }
            });
        for (ProcessReader& reader : readers) {
            std::move(reader.used.begin(), reader.used.end(), std::back_inserter(used_));
            lookable_.merge(reader.lookable);
        }
    }

    // Num RefCount Protocol Flags Type St Inode Path; the inode is the socket's, not the file's.
    void addSockets(std::string_view text) {
        forEachLine(text, [&](std::string_view line) {
            for (int i = 0; i < 7; ++i) {
                nextPart(line);
            }
            line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
            FilePlace place;
            const std::string path(line);
            if (line.starts_with('/') && findPlace(path.c_str(), place)) {
                used_.push_back({place.device, place.inode, path});
            }
        });
    }

    // "1: POSIX ADVISORY WRITE PID MAJOR:MINOR:INODE START END". Those of inspected processes are known already.
    void addLocks(std::string_view text, const std::string& own) {
        forEachLine(text, [&](std::string_view line) {
            nextPart(line);
            for (std::string_view kind = nextPart(line); kind == "->"; kind = nextPart(line)) {
                continue;  // a process that waits for the lock
            }
            nextPart(line);
            nextPart(line);
            const std::string holder(nextPart(line));
            const std::string_view place = nextPart(line);
            const std::size_t colon = std::min(place.rfind(':'), place.size());
            UsedFile file;
            if (holder != own && !lookable_.contains(holder) && colon < place.size() &&
                readDevice(place.substr(0, colon), file.device) &&
                readNumber(place.substr(colon + 1), file.inode, 10)) {
                used_.push_back(std::move(file));
            }
        });
    }

    std::vector<UsedFile>& used_;
    std::unordered_set<std::string> lookable_;
};

}  // namespace

bool findPlace(const char* path, FilePlace& place) {
    struct statx found {};
    if (statx(AT_FDCWD, path, AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT, wantedOfUsed, &found) != 0) {
        return false;
    }
    // File systems with several devices, btrfs and overlayfs, have numbers that belong to no driver.
    const bool isOneDevice = found.stx_dev_major != 0;
    place = {usedDevice(found), found.stx_ino, (found.stx_mask & STATX_MNT_ID) != 0 ? found.stx_mnt_id : 0,
             S_ISDIR(found.stx_mode), isOneDevice};
    return true;
}

bool listUsedFiles(std::vector<UsedFile>& used, LockList& locks) {
    return ProcessTable(used).look(locks);
}

}  // namespace vesk

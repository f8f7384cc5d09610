#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

#include "platform/files/descriptor.h"
#include "platform/files/syncing.h"

namespace vesk {

namespace {

// XFS has its number in its own header alone.
constexpr long xfsMagic = 0x58465342;

// Of ext2, ext3 and ext4, which have one number, those with a journal keep the order. The kernel names the thread that
// writes the journal.
bool hasJournal(dev_t device) {
    const std::string block = "/sys/dev/block/" + std::to_string(major(device)) + ":" + std::to_string(minor(device));
    std::error_code failure;
    const auto name = std::filesystem::canonical(block, failure).filename();
    const std::filesystem::path told = std::filesystem::path("/sys/fs/ext4") / name / "journal_task";
    const Descriptor file(failure ? -1 : open(told.c_str(), O_RDONLY | O_CLOEXEC));
    std::array<char, 16> first{};
    const ssize_t length = file ? read(file.get(), first.data(), first.size()) : 0;
    return length > 0 && first[0] >= '0' && first[0] <= '9';
}

// Waits for a file or folder, by one of the calls that do.
template <typename Call>
bool waitedFor(Call call) {
    int failed = 0;
    do {
        failed = call();
    } while (failed != 0 && errno == EINTR);
    return failed == 0;
}

// Has the content of all files written at once, then waits for each.
bool syncContents(const std::vector<int>& files) {
    constexpr unsigned begin = SYNC_FILE_RANGE_WRITE;
    constexpr unsigned wait = SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    bool done = true;
    for (const unsigned how : {begin, wait}) {
        for (const int file : files) {
            done = done && waitedFor([&] { return sync_file_range(file, 0, 0, how); });
        }
    }
    return done;
}

bool isBtrfs(int opened) {
    struct statfs system {};
    return fstatfs(opened, &system) == 0 && system.f_type == BTRFS_SUPER_MAGIC;
}

}  // namespace

bool keepsOrderOfNames(int folder) {
    struct statfs system {};
    struct stat found {};
    if (fstatfs(folder, &system) != 0 || fstat(folder, &found) != 0) {
        return false;
    }
    switch (system.f_type) {
        case BTRFS_SUPER_MAGIC:
        case TMPFS_MAGIC:  // whatever is in memory goes as a whole
        case xfsMagic:
            return true;
        case EXT4_SUPER_MAGIC:
            return hasJournal(found.st_dev);
        default:
            return false;
    }
}

bool syncNames(int folder) {
    // Btrfs writes what is asked for and may leave what came before, so it is asked for everything. A journal is
    // written in order, and elsewhere each change has been waited for already.
    const bool needsAll = isBtrfs(folder);
    return waitedFor([&] { return needsAll ? syncfs(folder) : fsync(folder); });
}

bool syncNewFiles(const std::vector<int>& files) {
    if (files.empty()) {
        return true;
    }
    // Once their contents are written, what is left is in the journal, which is written in order: one change that is
    // waited for, and all before it are there. That change is made here, since the file's own may be in the journal's
    // part that went before.
    const int last = files.back();
    if (!isBtrfs(last) && syncContents(files) && futimens(last, nullptr) == 0) {
        return waitedFor([&] { return fsync(last); });
    }
    return std::all_of(files.begin(), files.end(), [](int file) { return waitedFor([&] { return fsync(file); }); });
}

}  // namespace vesk

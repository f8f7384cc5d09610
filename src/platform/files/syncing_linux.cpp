#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

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
    struct statfs system {};
    const bool isBtrfs = fstatfs(folder, &system) == 0 && system.f_type == BTRFS_SUPER_MAGIC;
    int failed = 0;
    do {
        failed = isBtrfs ? syncfs(folder) : fsync(folder);
    } while (failed != 0 && errno == EINTR);
    return failed == 0;
}

}  // namespace vesk

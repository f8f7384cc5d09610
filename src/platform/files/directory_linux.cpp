#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstring>

#include "platform/files/descriptor.h"
#include "platform/files/directory_system.h"

namespace vesk {

namespace {

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

// Reading a folder sets its access time, which "Old downloads" judges by, so a scan would change what the next one
// finds. Only the owner may ask for O_NOATIME; for others' folders the plain call has to do.
template <typename Open>
Descriptor openWithoutTrace(Open open) {
    int number = open(O_NOATIME);
    if (number < 0 && errno == EPERM) {
        number = open(0);
    }
    return Descriptor(number);
}

}  // namespace

Descriptor openFolder(int parent, const char* path, LastLink lastLink) {
    const int flags = openFlags | (lastLink == LastLink::doNotFollow ? O_NOFOLLOW : 0);
    return openWithoutTrace([&](int extra) { return openat(parent, path, flags | extra); });
}

Descriptor openChildOnSameDevice(int parent, const char* name) {
    // openat2 is missing before Linux 5.6 and forbidden by some sandboxes.
    static std::atomic<bool> missing = false;
    if (missing.load(std::memory_order_relaxed)) {
        return openComparingDevices(parent, name);
    }
    open_how how{};
    how.resolve = RESOLVE_NO_XDEV;
    Descriptor child = openWithoutTrace([&](int extra) {
        how.flags = static_cast<unsigned>(openFlags | O_NOFOLLOW | extra);
        return static_cast<int>(syscall(SYS_openat2, parent, name, &how, sizeof how));
    });
    // EPERM may mean this folder or the call itself, so the older call decides.
    if (!child && (errno == ENOSYS || errno == EPERM)) {
        if (errno == ENOSYS) {
            missing.store(true, std::memory_order_relaxed);
        }
        return openComparingDevices(parent, name);
    }
    return child;
}

int readNames(int folder, const std::function<void(ListedItem)>& visit) {
    alignas(dirent64) std::array<char, std::size_t{32} * 1024> buffer;
    for (;;) {
        const long got = syscall(SYS_getdents64, folder, buffer.data(), buffer.size());
        if (got < 0) {
            return errno;
        }
        if (got == 0) {
            return 0;
        }
        for (long at = 0; at < got;) {
            const auto* item = reinterpret_cast<const dirent64*>(buffer.data() + at);
            at += item->d_reclen;
            visitListed(item->d_name, item->d_type, visit);
        }
    }
}

int statItem(int folder, const char* name, ResourceValues& values, WantedDates dates) {
    constexpr int flags = AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC | AT_NO_AUTOMOUNT;
    constexpr unsigned always = STATX_TYPE | STATX_BLOCKS | STATX_ATIME;
    // Whoever asks for the modification date makes Linux note in the file that its times were asked for (since 6.13,
    // for the sake of finer time stamps): a write that every look of a scan can do without.
    const unsigned wanted = dates == WantedDates::both ? always | STATX_MTIME : always;
    // Left as it is: the kernel fills all of it, and clearing it first would cost as much as reading it.
    struct statx found;
    if (statx(folder, name, flags, wanted, &found) != 0) {
        return errno;
    }
    if (dates == WantedDates::lastUse && (found.stx_mask & (STATX_ATIME | STATX_MTIME)) == 0) {
        return statItem(folder, name, values, WantedDates::both);
    }
    values.isRegularFile = S_ISREG(found.stx_mode);
    values.isDirectory = S_ISDIR(found.stx_mode);
    values.isSymbolicLink = S_ISLNK(found.stx_mode);
    values.fileAllocatedSize.reset();
    values.totalFileAllocatedSize.reset();
    values.contentAccessDate.reset();
    values.contentModificationDate.reset();
    if ((found.stx_mask & STATX_BLOCKS) != 0) {
        values.totalFileAllocatedSize = static_cast<std::int64_t>(found.stx_blocks) * 512;
    }
    if ((found.stx_mask & STATX_ATIME) != 0) {
        values.contentAccessDate = dateFromUnix(found.stx_atime.tv_sec, found.stx_atime.tv_nsec);
    }
    if ((found.stx_mask & STATX_MTIME) != 0) {
        values.contentModificationDate = dateFromUnix(found.stx_mtime.tv_sec, found.stx_mtime.tv_nsec);
    }
    return 0;
}

}  // namespace vesk

// Preloaded into a program, this library makes the file-system calls of a chosen phase of it fail one at a time, or
// kills the program there. It replaces libc's functions, so it also meets the calls that Qt and the C++ library make
// for the program; the calls that libc makes inside itself it does not see.
//
// The program says where a phase begins by calling vesk_fault_phase, which it looks up by name; nothing is counted
// before. Environment:
//   VESK_FAULT_PHASE   the phase in which calls are counted and fail
//   VESK_FAULT_ERROR   a name of the table in fault_fits.h (EIO, ...), or KILL
//   VESK_FAULT_AT      which of the calls that can fail like this, from 1; 0 or unset: none, only count
//   VESK_FAULT_LASTS   set: every later call that can fail like this does so too, in later phases as well
//   VESK_FAULT_MADE    set: calls that change names are made and then say that they failed, as a network disk may whose
//                      first answer was lost; other calls neither count nor fail
//   VESK_FAULT_OLD     set: no file system has a rename that refuses to replace (EINVAL), as on NFS and some of FUSE
//   VESK_FAULT_ALIKE   set: all files have one inode number, as on some FUSE file systems and network disks
//   VESK_FAULT_EMPTIED set: the record of each item vanishes just before the item comes into the Trash, as when another
//                      program empties it; "taken": a third program then records an item of its own under the name;
//                      "always": whatever name it is given
//   VESK_FAULT_UNORDERED
//                      set: every file system says that it is one of those that keep no order of changes to names;
//                      not set: that it is one of those that do
//   VESK_FAULT_TRACE   set: a line "call CALL" for each call of the phase
//   VESK_FAULT_REPORT  a file to which lines are added: "hit CALL ERROR", and at the end "count ERROR NUMBER"

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <signal.h>
#include <stdarg.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "faults/fault_fits.h"

namespace {

using namespace vesk::testing;

// ---- The calls of libc that are replaced ----------------------------------------------------------------------------

template <typename Function>
Function* real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

using SystemCall = long(long, ...);

SystemCall* realSystemCall() {
    static SystemCall* const found = real<SystemCall>("syscall");
    return found;
}

// ---- The plan -------------------------------------------------------------------------------------------------------

const char* setting(const char* name) {
    return std::getenv(name);  // NOLINT(concurrency-mt-unsafe): nobody changes the environment
}

void report(const char* text) {
    const char* path = setting("VESK_FAULT_REPORT");
    if (path == nullptr) {
        return;
    }
    SystemCall& call = *realSystemCall();
    const long file = call(SYS_openat, AT_FDCWD, path, O_WRONLY | O_APPEND | O_CLOEXEC);
    if (file >= 0) {
        call(SYS_write, file, text, std::strlen(text));
        call(SYS_close, file);
    }
}

class Plan {
public:
    Plan() {
        const char* name = setting("VESK_FAULT_ERROR");
        for (std::size_t i = 0; name != nullptr && i < errors.size(); ++i) {
            if (std::strcmp(name, errors[i].name) == 0) {
                chosen_ = i;
            }
        }
        const char* at = setting("VESK_FAULT_AT");
        at_ = at == nullptr ? 0 : std::strtol(at, nullptr, 10);
        lasts_ = setting("VESK_FAULT_LASTS") != nullptr;
        old_ = setting("VESK_FAULT_OLD") != nullptr;
        made_ = setting("VESK_FAULT_MADE") != nullptr;
        alike_ = setting("VESK_FAULT_ALIKE") != nullptr;
        emptied_ = setting("VESK_FAULT_EMPTIED");
        unordered_ = setting("VESK_FAULT_UNORDERED") != nullptr;
        traced_ = setting("VESK_FAULT_TRACE") != nullptr;
    }

    bool isOldFileSystem() const { return old_; }
    bool filesAreAlike() const { return alike_; }
    bool trashIsEmptied() const { return emptied_ != nullptr; }
    bool namesAreTaken() const { return trashIsEmptied() && std::strcmp(emptied_, "yes") != 0; }
    bool namesAreAlwaysTaken() const { return trashIsEmptied() && std::strcmp(emptied_, "always") == 0; }
    bool isUnordered() const { return unordered_; }
    bool isMade(Call call) const { return made_ && changesNames(call); }

    void enter(const char* phase) {
        const char* wanted = setting("VESK_FAULT_PHASE");
        const bool counts = wanted != nullptr && std::strcmp(wanted, phase) == 0;
        if (counted_ && !counts && !reported_.exchange(true)) {
            reportCounts();
        }
        counted_ = counted_ || counts;
        counting_ = counts;
    }

    // The errno value with which this call is to fail; 0 when it is to be made.
    int errorFor(Call call) {
        const Fit& fit = fitOf(call);
        if (failsFromNowOn_ && canFail(fit, chosen_)) {
            return errors[chosen_].number;
        }
        if (!counting_ || (made_ && !changesNames(fit.call))) {
            return 0;
        }
        if (traced_) {
            tell("call", fit.name, "");
        }
        int number = 0;
        for (std::size_t i = 0; i < errors.size(); ++i) {
            if (canFail(fit, i) && ++counts_[i] == at_ && i == chosen_) {
                number = strike(fit);
            }
        }
        return number;
    }

private:
    static void tell(const char* what, const char* call, const char* error) {
        std::array<char, 128> line{};
        std::snprintf(line.data(), line.size(), "%s %s %s\n", what, call, error);
        report(line.data());
    }

    int strike(const Fit& fit) {
        tell("hit", fit.name, errors[chosen_].name);
        if (errors[chosen_].number == 0) {
            realSystemCall()(SYS_kill, getpid(), SIGKILL);
        }
        failsFromNowOn_ = lasts_;
        return errors[chosen_].number;
    }

    void reportCounts() {
        for (std::size_t i = 0; i < errors.size(); ++i) {
            std::array<char, 64> line{};
            std::snprintf(line.data(), line.size(), "count %s %ld\n", errors[i].name, counts_[i].load());
            report(line.data());
        }
    }

    std::size_t chosen_ = errors.size() - 1;
    long at_ = 0;
    bool lasts_ = false;
    bool old_ = false;
    bool made_ = false;
    bool alike_ = false;
    const char* emptied_ = nullptr;
    bool unordered_ = false;
    bool traced_ = false;
    bool counted_ = false;
    std::atomic<bool> reported_ = false;
    std::atomic<bool> counting_ = false;
    std::atomic<bool> failsFromNowOn_ = false;
    std::array<std::atomic<long>, errors.size()> counts_{};
};

Plan& plan() {
    static Plan instance;
    return instance;
}

// Whether the call is to fail; errno says how.
bool fails(Call call) {
    const int number = plan().errorFor(call);
    if (number != 0) {
        errno = number;
    }
    return number != 0;
}

// Pipes, sockets and the wake-up descriptors of event loops are no files.
bool isOnDisk(int file) {
    struct stat found {};
    const int kept = errno;
    const bool known = realSystemCall()(SYS_fstat, file, &found) == 0;
    errno = kept;
    return known && (S_ISREG(found.st_mode) || S_ISDIR(found.st_mode));
}

bool failsOnDisk(Call call, int file) {
    return isOnDisk(file) && fails(call);
}

template <typename Stat>
int numbered(int answer, Stat* found) {
    if (answer == 0 && plan().filesAreAlike() && !S_ISDIR(found->st_mode)) {
        found->st_ino = 1;
    }
    return answer;
}

int numbered(int answer, struct statx* found) {
    if (answer == 0 && plan().filesAreAlike() && !S_ISDIR(found->stx_mode)) {
        found->stx_ino = 1;
    }
    return answer;
}

// Takes away the record of the item that is about to get this name in the folder of a Trash's items.
void takeRecordAway(long files, const char* name) {
    std::array<char, 512> record{};
    std::snprintf(record.data(), record.size(), "../info/%s.trashinfo", name);
    SystemCall& call = *realSystemCall();
    if (files < 0 || call(SYS_unlinkat, files, record.data(), 0) != 0 || !plan().namesAreTaken()) {
        return;
    }
    const long file = call(SYS_openat, files, record.data(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    constexpr const char* others = "[Trash Info]\nPath=/others\nDeletionDate=2026-01-01T00:00:00\n";
    call(SYS_write, file, others, std::strlen(others));
    call(SYS_close, file);
}

Call openingWith(int flags) {
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE ? Call::make : Call::open;
}

}  // namespace

/// Begins a phase; a name that no test asks for ends the one before.
extern "C" void vesk_fault_phase(const char* name);
void vesk_fault_phase(const char* name) {
    plan().enter(name);
}

// ---- What replaces them ---------------------------------------------------------------------------------------------
// Each function asks for the real one by its own name, once.

#define VESK_REAL(name)                                         \
    (*[] {                                                      \
        static auto* const found = real<decltype(name)>(#name); \
        return found;                                           \
    }())

extern "C" {

// The plain form: fails as the plan says, or passes everything on.
#define VESK_WRAP(result, failed, name, parameters, arguments, call)        \
    result name parameters {                                                \
        if (!fails(call)) {                                                 \
            return VESK_REAL(name) arguments;                               \
        }                                                                   \
        const int number = errno;                                           \
        if (plan().isMade(call)) {                                          \
            [[maybe_unused]] const auto answer = VESK_REAL(name) arguments; \
        }                                                                   \
        errno = number;                                                     \
        return failed;                                                      \
    }

// Those that look at something.
#define VESK_WRAP_LOOK(name, parameters, arguments)                                 \
    int name parameters {                                                           \
        return fails(Call::look) ? -1 : numbered(VESK_REAL(name) arguments, found); \
    }

// Those of an open file, and of a disk alone.
#define VESK_WRAP_FILE(result, name, parameters, arguments, call)        \
    result name parameters {                                             \
        return failsOnDisk(call, file) ? -1 : VESK_REAL(name) arguments; \
    }

// Opening takes a mode only where it makes something.
#define VESK_WRAP_OPEN(name, parameters, arguments, mode)                  \
    int name parameters {                                                  \
        va_list rest;                                                      \
        va_start(rest, flags);                                             \
        const unsigned mode = va_arg(rest, unsigned);                      \
        va_end(rest);                                                      \
        return fails(openingWith(flags)) ? -1 : VESK_REAL(name) arguments; \
    }

VESK_WRAP_OPEN(open, (const char* path, int flags, ...), (path, flags, mode), mode)
VESK_WRAP_OPEN(open64, (const char* path, int flags, ...), (path, flags, mode), mode)
VESK_WRAP_OPEN(openat, (int folder, const char* path, int flags, ...), (folder, path, flags, mode), mode)
VESK_WRAP_OPEN(openat64, (int folder, const char* path, int flags, ...), (folder, path, flags, mode), mode)
VESK_WRAP(int, -1, mkostemp, (char* name, int flags), (name, flags), Call::make)
VESK_WRAP(int, -1, mkostemp64, (char* name, int flags), (name, flags), Call::make)
VESK_WRAP(int, -1, mkstemp, (char* name), (name), Call::make)
VESK_WRAP(int, -1, mkstemp64, (char* name), (name), Call::make)
VESK_WRAP(FILE*, nullptr, fopen, (const char* path, const char* mode), (path, mode), Call::open)
VESK_WRAP(FILE*, nullptr, fopen64, (const char* path, const char* mode), (path, mode), Call::open)

VESK_WRAP(DIR*, nullptr, opendir, (const char* path), (path), Call::open)
VESK_WRAP(DIR*, nullptr, fdopendir, (int folder), (folder), Call::look)
VESK_WRAP(dirent*, nullptr, readdir, (DIR * folder), (folder), Call::list)
VESK_WRAP(dirent64*, nullptr, readdir64, (DIR * folder), (folder), Call::list)

VESK_WRAP_LOOK(stat, (const char* path, struct stat* found), (path, found))
VESK_WRAP_LOOK(stat64, (const char* path, struct stat64* found), (path, found))
VESK_WRAP_LOOK(lstat, (const char* path, struct stat* found), (path, found))
VESK_WRAP_LOOK(lstat64, (const char* path, struct stat64* found), (path, found))
int fstat(int file, struct stat* found) {
    return failsOnDisk(Call::look, file) ? -1 : numbered(VESK_REAL(fstat)(file, found), found);
}
int fstat64(int file, struct stat64* found) {
    return failsOnDisk(Call::look, file) ? -1 : numbered(VESK_REAL(fstat64)(file, found), found);
}
VESK_WRAP_LOOK(fstatat, (int folder, const char* path, struct stat* found, int flags), (folder, path, found, flags))
VESK_WRAP_LOOK(fstatat64, (int folder, const char* path, struct stat64* found, int flags), (folder, path, found, flags))
VESK_WRAP_LOOK(statx, (int folder, const char* path, int flags, unsigned wanted, struct statx* found),
               (folder, path, flags, wanted, found))
VESK_WRAP(int, -1, access, (const char* path, int mode), (path, mode), Call::look)
VESK_WRAP(int, -1, faccessat, (int folder, const char* path, int mode, int flags), (folder, path, mode, flags),
          Call::look)
VESK_WRAP(long, -1, fpathconf, (int file, int name), (file, name), Call::look)

VESK_WRAP(ssize_t, -1, readlink, (const char* path, char* target, std::size_t size), (path, target, size),
          Call::resolve)
VESK_WRAP(ssize_t, -1, readlinkat, (int folder, const char* path, char* target, std::size_t size),
          (folder, path, target, size), Call::resolve)
VESK_WRAP(char*, nullptr, realpath, (const char* path, char* resolved), (path, resolved), Call::resolve)

VESK_WRAP(int, -1, mkdir, (const char* path, mode_t mode), (path, mode), Call::makeFolder)
VESK_WRAP(int, -1, mkdirat, (int folder, const char* path, mode_t mode), (folder, path, mode), Call::makeFolder)

VESK_WRAP(int, -1, rename, (const char* from, const char* to), (from, to), Call::rename)
VESK_WRAP(int, -1, renameat, (int folder, const char* from, int other, const char* to), (folder, from, other, to),
          Call::rename)
VESK_WRAP(int, -1, renameat2, (int folder, const char* from, int other, const char* to, unsigned flags),
          (folder, from, other, to, flags), Call::rename)
VESK_WRAP(int, -1, link, (const char* from, const char* to), (from, to), Call::link)
VESK_WRAP(int, -1, linkat, (int folder, const char* from, int other, const char* to, int flags),
          (folder, from, other, to, flags), Call::link)

VESK_WRAP(int, -1, unlink, (const char* path), (path), Call::remove)
VESK_WRAP(int, -1, unlinkat, (int folder, const char* path, int flags), (folder, path, flags), Call::remove)
VESK_WRAP(int, -1, rmdir, (const char* path), (path), Call::remove)
VESK_WRAP(int, -1, remove, (const char* path), (path), Call::remove)

VESK_WRAP_FILE(ssize_t, read, (int file, void* bytes, std::size_t size), (file, bytes, size), Call::read)
VESK_WRAP_FILE(ssize_t, pread, (int file, void* bytes, std::size_t size, off_t at), (file, bytes, size, at), Call::read)
VESK_WRAP_FILE(ssize_t, pread64, (int file, void* bytes, std::size_t size, off64_t at), (file, bytes, size, at),
               Call::read)
VESK_WRAP_FILE(ssize_t, write, (int file, const void* bytes, std::size_t size), (file, bytes, size), Call::write)
VESK_WRAP_FILE(ssize_t, pwrite, (int file, const void* bytes, std::size_t size, off_t at), (file, bytes, size, at),
               Call::write)
VESK_WRAP_FILE(ssize_t, pwrite64, (int file, const void* bytes, std::size_t size, off64_t at), (file, bytes, size, at),
               Call::write)
VESK_WRAP_FILE(int, fsync, (int file), (file), Call::sync)
VESK_WRAP_FILE(int, fdatasync, (int file), (file), Call::sync)
VESK_WRAP_FILE(int, syncfs, (int file), (file), Call::sync)
VESK_WRAP_FILE(int, sync_file_range, (int file, off64_t at, off64_t size, unsigned flags), (file, at, size, flags),
               Call::sync)

VESK_WRAP(int, -1, statvfs, (const char* path, struct statvfs* found), (path, found), Call::volume)
VESK_WRAP(int, -1, statvfs64, (const char* path, struct statvfs64* found), (path, found), Call::volume)

// A memory card's file system has no journal. Otherwise the calls are those of a file system that keeps the order,
// whatever the tests lie on.
int fstatfs(int file, struct statfs* found) {
    const int answer = VESK_REAL(fstatfs)(file, found);
    found->f_type = plan().isUnordered() ? MSDOS_SUPER_MAGIC : TMPFS_MAGIC;
    return answer;
}

// Whatever a close answers, Linux has closed.
int close(int file) {
    const bool failed = failsOnDisk(Call::close, file);
    const int number = errno;
    const int closed = VESK_REAL(close)(file);
    if (failed) {
        errno = number;
    }
    return failed ? -1 : closed;
}

// The calls for which Vesk goes by their numbers.
long syscall(long number, ...) {
    va_list rest;
    va_start(rest, number);
    std::array<long, 6> values{};
    for (long& value : values) {
        value = va_arg(rest, long);
    }
    va_end(rest);
    if (number == SYS_renameat2 && plan().isOldFileSystem()) {
        errno = EINVAL;
        return -1;
    }
    const bool comesIn = values[0] != values[2] || plan().namesAreAlwaysTaken();
    if (number == SYS_renameat2 && plan().trashIsEmptied() && comesIn) {
        takeRecordAway(values[2], reinterpret_cast<const char*>(values[3]));
    }
    const bool failed = (number == SYS_openat2 && fails(Call::open)) ||
                        (number == SYS_getdents64 && fails(Call::list)) ||
                        (number == SYS_renameat2 && fails(Call::rename));
    const int error = errno;
    if (failed && !(number == SYS_renameat2 && plan().isMade(Call::rename))) {
        return -1;
    }
    const long answer = realSystemCall()(number, values[0], values[1], values[2], values[3], values[4], values[5]);
    if (failed) {
        errno = error;
    }
    return failed ? -1 : answer;
}

}  // extern "C"

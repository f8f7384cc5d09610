// Preloaded into programs that share the Trash with Vesk, this library logs every file that one of them took a name
// from: deleted, or replaced by a rename. It adds a line "CALL INODE" to the file that VESK_NAME_LOG names.

#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

// The file that a call may take a name from. Held open, so that the answer is about this file whatever the name then
// belongs to.
class Watched {
public:
    Watched(int folder, const char* path)
        : file_(openat(folder, path, O_PATH | O_NOFOLLOW | O_CLOEXEC)), before_(look()) {}
    Watched(const Watched&) = delete;
    Watched& operator=(const Watched&) = delete;
    ~Watched() {
        if (file_ >= 0) {
            close(file_);
        }
    }

    void logIfItLostAName(const char* call) const {
        const char* path = getenv("VESK_NAME_LOG");
        if (file_ < 0 || path == nullptr || look().st_nlink >= before_.st_nlink) {
            return;
        }
        const int log = open(path, O_WRONLY | O_APPEND | O_CLOEXEC);
        dprintf(log, "%s %lu\n", call, static_cast<unsigned long>(before_.st_ino));
        close(log);
    }

private:
    struct stat look() const {
        struct stat found {};
        fstat(file_, &found);
        return found;
    }

    int file_;
    struct stat before_;
};

int logged(const char* call, const Watched& file, long result) {
    const int error = errno;
    file.logIfItLostAName(call);
    errno = error;
    return static_cast<int>(result);
}

int renamed(int from, const char* old, int to, const char* name) {
    const Watched replaced(to, name);
    return logged("replaced", replaced, syscall(SYS_renameat2, from, old, to, name, 0U));
}

int unlinked(int folder, const char* path, int flags) {
    const Watched deleted(folder, path);
    return logged("deleted", deleted, syscall(SYS_unlinkat, folder, path, flags));
}

}  // namespace

extern "C" {

int rename(const char* from, const char* to) noexcept {
    return renamed(AT_FDCWD, from, AT_FDCWD, to);
}
int renameat(int from, const char* old, int to, const char* name) noexcept {
    return renamed(from, old, to, name);
}
int unlink(const char* path) noexcept {
    return unlinked(AT_FDCWD, path, 0);
}
int unlinkat(int folder, const char* path, int flags) noexcept {
    return unlinked(folder, path, flags);
}
}

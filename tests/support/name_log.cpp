// Preloaded into programs that share the Trash with Vesk, this library logs what they do to the names of files. It adds
// lines to the file that VESK_NAME_LOG names: "deleted INODE PATH", "replaced INODE PATH" for what a rename took a name
// from, and "moved INODE PATH" with the new name.

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

// The item at a path before a call. Held open, so that the answer is about this item whatever the path then leads to.
class Item {
public:
    Item(int folder, const char* path)
        : file_(openat(folder, path, O_PATH | O_NOFOLLOW | O_CLOEXEC)), before_(look()) {}
    Item(const Item&) = delete;
    Item& operator=(const Item&) = delete;
    ~Item() {
        if (file_ >= 0) {
            close(file_);
        }
    }

    bool hasLostAName() const { return file_ >= 0 && look().st_nlink < before_.st_nlink; }

    void log(const char* change, const char* path) const {
        const int error = errno;
        const char* place = getenv("VESK_NAME_LOG");
        const int log = file_ < 0 || place == nullptr ? -1 : open(place, O_WRONLY | O_APPEND | O_CLOEXEC);
        if (log >= 0) {
            dprintf(log, "%s %lu %s\n", change, static_cast<unsigned long>(before_.st_ino), path);
            close(log);
        }
        errno = error;
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

int loggedRename(int from, const char* old, int to, const char* name) {
    const Item item(from, old);
    const Item replaced(to, name);
    const long result = syscall(SYS_renameat2, from, old, to, name, 0U);
    if (result == 0) {
        item.log("moved", name);
        if (replaced.hasLostAName()) {
            replaced.log("replaced", name);
        }
    }
    return static_cast<int>(result);
}

int loggedUnlink(int folder, const char* path, int flags) {
    const Item item(folder, path);
    const long result = syscall(SYS_unlinkat, folder, path, flags);
    if (result == 0 && item.hasLostAName()) {
        item.log("deleted", path);
    }
    return static_cast<int>(result);
}

}  // namespace

extern "C" {

int rename(const char* from, const char* to) noexcept {
    return loggedRename(AT_FDCWD, from, AT_FDCWD, to);
}
int renameat(int from, const char* old, int to, const char* name) noexcept {
    return loggedRename(from, old, to, name);
}
int unlink(const char* path) noexcept {
    return loggedUnlink(AT_FDCWD, path, 0);
}
int unlinkat(int folder, const char* path, int flags) noexcept {
    return loggedUnlink(folder, path, flags);
}
}

// A library that takes the place of libc's calls which make names, so that a program sees a file system that names
// things as APFS does (Apple File System Guide, "Frequently Asked Questions"): a name that is not UTF-8 is refused with
// EILSEQ, and one that differs from a name that is there in case or in Unicode form alone is that other name. To be
// preloaded.

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <QString>

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <string>
#include <string_view>

namespace {

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool isPlain(std::string_view name) {
    for (const char character : name) {
        if (static_cast<unsigned char>(character) >= 0x80) {
            return false;
        }
    }
    return true;
}

// What two names have in common when they are one.
QString keyOf(const std::string& name) {
    return QString::fromStdString(name).normalized(QString::NormalizationForm_D).toCaseFolded();
}

bool isUtf8(const std::string& name) {
    return isPlain(name) || QString::fromStdString(name).toStdString() == name;
}

bool isThere(int folder, const std::string& path) {
    struct stat found {};
    return fstatat(folder, path.c_str(), &found, AT_SYMLINK_NOFOLLOW) == 0;
}

// The name in a folder that means the same, or the name itself.
std::string nameIn(int folder, const std::string& above, const std::string& name) {
    const std::string place = above.empty() ? "." : above;
    if (name == "." || name == ".." || isThere(folder, above.empty() ? name : above + "/" + name)) {
        return name;
    }
    // The program itself has read nothing: the folder's access time stays.
    const int opened = next<int(int, const char*, int, ...)>("openat")(folder, place.c_str(),
                                                                       O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOATIME);
    DIR* stream = opened >= 0 ? fdopendir(opened) : nullptr;
    if (stream == nullptr) {
        return name;
    }
    const QString key = keyOf(name);
    std::string same = name;
    while (const dirent* item = readdir(stream)) {
        if (keyOf(item->d_name) == key) {
            same = item->d_name;
            break;
        }
    }
    closedir(stream);
    return same;
}

// The path by the names that are there. Returns false, with errno set, when a name cannot be held. The folder is
// AT_FDCWD or an open one.
bool resolve(int folder, const char* path, std::string& resolved) {
    const int kept = errno;
    resolved.clear();
    // Only what tests make: the rest of the machine has names of its own.
    const std::string_view whole(path);
    if (whole.find("vesk-test") == whole.npos && (folder == AT_FDCWD || whole.starts_with('/'))) {
        resolved = path;
        return true;
    }
    std::size_t at = 0;
    while (at < whole.size()) {
        if (whole[at] == '/') {
            if (resolved.empty() || resolved.back() != '/') {
                resolved += '/';
            }
            ++at;
            continue;
        }
        const std::size_t end = std::min(whole.find('/', at), whole.size());
        const std::string name(whole.substr(at, end - at));
        if (!isUtf8(name)) {
            errno = EILSEQ;
            return false;
        }
        const std::string above =
            resolved.size() > 1 && resolved.back() == '/' ? resolved.substr(0, resolved.size() - 1) : resolved;
        resolved += nameIn(folder, above, name);
        at = end;
    }
    errno = kept;
    return true;
}

}  // namespace

#define RESOLVED(folder, path)              \
    std::string resolved;                   \
    if (!resolve(folder, path, resolved)) { \
        return -1;                          \
    }

#define RESOLVED_BOTH(folder, path, otherFolder, otherPath)                            \
    std::string resolved;                                                              \
    std::string other;                                                                 \
    if (!resolve(folder, path, resolved) || !resolve(otherFolder, otherPath, other)) { \
        return -1;                                                                     \
    }

extern "C" {

int open(const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    RESOLVED(AT_FDCWD, path)
    return next<int(const char*, int, ...)>("open")(resolved.c_str(), flags, mode);
}

int open64(const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    RESOLVED(AT_FDCWD, path)
    return next<int(const char*, int, ...)>("open64")(resolved.c_str(), flags, mode);
}

int openat(int folder, const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    RESOLVED(folder, path)
    return next<int(int, const char*, int, ...)>("openat")(folder, resolved.c_str(), flags, mode);
}

int stat(const char* path, struct stat* found) {
    RESOLVED(AT_FDCWD, path)
    return next<int(const char*, struct stat*)>("stat")(resolved.c_str(), found);
}

int lstat(const char* path, struct stat* found) {
    RESOLVED(AT_FDCWD, path)
    return next<int(const char*, struct stat*)>("lstat")(resolved.c_str(), found);
}

FILE* fopen(const char* path, const char* mode) {
    std::string resolved;
    return resolve(AT_FDCWD, path, resolved) ? next<FILE*(const char*, const char*)>("fopen")(resolved.c_str(), mode)
                                             : nullptr;
}

FILE* fopen64(const char* path, const char* mode) {
    std::string resolved;
    return resolve(AT_FDCWD, path, resolved) ? next<FILE*(const char*, const char*)>("fopen64")(resolved.c_str(), mode)
                                             : nullptr;
}

int mkdir(const char* path, mode_t mode) {
    RESOLVED(AT_FDCWD, path)
    return next<int(const char*, mode_t)>("mkdir")(resolved.c_str(), mode);
}

int mkfifo(const char* path, mode_t mode) {
    RESOLVED(AT_FDCWD, path)
    return next<int(const char*, mode_t)>("mkfifo")(resolved.c_str(), mode);
}

int symlink(const char* target, const char* path) {
    RESOLVED(AT_FDCWD, path)
    return next<int(const char*, const char*)>("symlink")(target, resolved.c_str());
}

int link(const char* from, const char* to) {
    RESOLVED_BOTH(AT_FDCWD, from, AT_FDCWD, to)
    return next<int(const char*, const char*)>("link")(resolved.c_str(), other.c_str());
}

int rename(const char* from, const char* to) {
    RESOLVED_BOTH(AT_FDCWD, from, AT_FDCWD, to)
    return next<int(const char*, const char*)>("rename")(resolved.c_str(), other.c_str());
}

}  // extern "C"

#include "temporary_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <system_error>

namespace vesk {

namespace {

namespace fs = std::filesystem;

// A file in each folder that its process holds locked. The lock ends with the process, however that ends. The file also
// tells a folder of this class from somebody else's of a similar name.
constexpr const char* lockName = ".in-use-by-vesk";

bool isAt(const fs::path& path, int descriptor) {
    struct stat named {};
    struct stat held {};
    return lstat(path.c_str(), &named) == 0 && fstat(descriptor, &held) == 0 && named.st_dev == held.st_dev &&
           named.st_ino == held.st_ino;
}

// Locks a folder for this process. Returns the lock's descriptor, or -1 when another process has it, when the folder is
// gone by now, or when it has no lock file and `flags` do not make one.
int lock(const fs::path& folder, int flags) {
    constexpr mode_t forOwner = 0600;
    const fs::path file = folder / lockName;
    const int descriptor = open(file.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC | flags, forOwner);
    if (descriptor >= 0 && (flock(descriptor, LOCK_EX | LOCK_NB) != 0 || !isAt(file, descriptor))) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

bool isOwnFolder(const fs::path& path) {
    struct stat found {};
    return lstat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == geteuid();
}

// Folders that were made unreadable must not stop the removal.
void makeRemovable(const fs::path& folder) {
    std::error_code ignored;
    fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, ignored);
    for (const fs::directory_entry& item : fs::directory_iterator(folder, ignored)) {
        if (item.is_directory(ignored) && !item.is_symlink(ignored)) {
            makeRemovable(item.path());
        }
    }
}

// The lock file goes last: should this be killed on the way, the rest is still known for what it is.
void removeLocked(const fs::path& folder) {
    std::error_code ignored;
    for (const fs::directory_entry& item : fs::directory_iterator(folder, ignored)) {
        if (item.path().filename() != lockName) {
            removeTree(item.path());
        }
    }
    removeTree(folder);
}

}  // namespace

void removeTree(const fs::path& folder) {
    std::error_code ignored;
    makeRemovable(folder);
    fs::remove_all(folder, ignored);
}

fs::path TemporaryFolder::systemPlace() {
    std::error_code ignored;
    return fs::temp_directory_path(ignored);
}

void TemporaryFolder::removeLeftBehind(const std::string& name, const fs::path& place) {
    std::error_code ignored;
    for (const fs::directory_entry& item : fs::directory_iterator(place, ignored)) {
        if (!item.path().filename().string().starts_with(name + "-") || !isOwnFolder(item.path())) {
            continue;
        }
        const int left = lock(item.path(), 0);
        if (left >= 0) {
            removeLocked(item.path());
            close(left);
        }
    }
}

TemporaryFolder::TemporaryFolder(const std::string& name, const fs::path& place) {
    removeLeftBehind(name, place);
    constexpr int attempts = 10;  // another process may take the folder for one left behind until it is locked
    for (int attempt = 0; attempt < attempts && lock_ < 0; ++attempt) {
        std::string pattern = (place / (name + "-XXXXXX")).string();
        if (mkdtemp(pattern.data()) == nullptr) {
            return;
        }
        lock_ = lock(pattern, O_CREAT | O_EXCL);
        if (lock_ < 0) {
            rmdir(pattern.c_str());
            continue;
        }
        std::error_code failure;
        path_ = fs::canonical(pattern, failure);
    }
}

TemporaryFolder::~TemporaryFolder() {
    remove();
}

void TemporaryFolder::remove() {
    if (!path_.empty()) {
        removeLocked(path_);
    }
    if (lock_ >= 0) {
        close(lock_);
        lock_ = -1;
    }
}

}  // namespace vesk

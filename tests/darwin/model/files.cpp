#include "darwin/model/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/stat.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <QFile>
#include <QString>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <set>
#include <utility>
#include <vector>

#include "darwin/model/misuse.h"
#include "support/temporary_home.h"

// Under Darwin's own names come Darwin's structures; the plain headers above are this machine's.
#include "darwin/include/sys/attr.h"
#include "darwin/include/sys/vnode.h"

extern "C" {
int __real_open(const char* path, int flags, ...);
int __real_openat(int folder, const char* path, int flags, ...);
}

namespace vesk::darwin {

namespace {

// Policies of <sys/resource.h>.
constexpr int typeAccessTimes = 2;
constexpr int typeFetching = 3;
constexpr int scopeOfThread = 1;
constexpr int fetchingOff = 1;

using Identity = std::pair<std::uint64_t, std::uint64_t>;

struct Files {
    std::mutex lock;
    std::set<Identity> dataless;
    BulkBehaviour bulk;
    std::atomic<int> fetched = 0;
    std::atomic<int> records = 0;
    std::atomic<bool> worldIsReal = false;
};

Files& files() {
    static Files& instance = *new Files;
    return instance;
}

thread_local int policyForFetching = 0;
thread_local int policyForAccessTimes = 0;

bool look(int folder, const char* path, int flags, struct statx& found) {
    return syscall(SYS_statx, folder, path, flags, STATX_BASIC_STATS | STATX_BTIME, &found) == 0;
}

std::uint64_t deviceOf(const struct statx& found) {
    return (std::uint64_t{found.stx_dev_major} << 20U) | found.stx_dev_minor;
}

bool isDataless(int folder, const char* path, int flags) {
    struct statx found {};
    if (!look(folder, path, flags, found)) {
        return false;
    }
    const std::lock_guard guard(files().lock);
    return files().dataless.contains({deviceOf(found), found.stx_ino});
}

// Opening is what fetches. Returns false, with errno set, on a thread that refuses to.
bool mayOpen(int folder, const char* path, int flags) {
    if (!isDataless(folder, path, (flags & O_NOFOLLOW) != 0 ? AT_SYMLINK_NOFOLLOW : 0)) {
        return true;
    }
    if (policyForFetching == fetchingOff) {
        errno = EDEADLK;
        return false;
    }
    files().fetched.fetch_add(1);
    return true;
}

// One record of getattrlistbulk: the length, the attributes that follow, the error, then each attribute in the order of
// its bit; what varies in length comes last, and a reference with its distance stands in its place.
class Record {
public:
    template <typename Value>
    void put(Value value) {
        const std::size_t at = bytes_.size();
        bytes_.resize(at + sizeof value);
        std::memcpy(bytes_.data() + at, &value, sizeof value);
    }

    void putName(std::string name) {
        nameAt_ = bytes_.size();
        name_ = std::move(name);
        put(attrreference_t{0, static_cast<std::uint32_t>(name_.size() + 1)});
    }

    void putTime(const statx_timestamp& time) {
        put(std::int64_t{time.tv_sec});
        put(std::int64_t{time.tv_nsec});
    }

    std::vector<char> finished() {
        if (nameAt_ != 0) {
            const auto distance = static_cast<std::int32_t>(bytes_.size() - nameAt_);
            std::memcpy(bytes_.data() + nameAt_, &distance, sizeof distance);
            bytes_.insert(bytes_.end(), name_.begin(), name_.end());
            bytes_.push_back('\0');
        }
        bytes_.resize((bytes_.size() + 7) / 8 * 8);
        const auto length = static_cast<std::uint32_t>(bytes_.size());
        std::memcpy(bytes_.data(), &length, sizeof length);
        return std::move(bytes_);
    }

private:
    std::vector<char> bytes_ = std::vector<char>(4);
    std::string name_;
    std::size_t nameAt_ = 0;
};

std::uint32_t vnodeType(unsigned mode) {
    return S_ISREG(mode)    ? VREG
           : S_ISDIR(mode)  ? VDIR
           : S_ISLNK(mode)  ? VLNK
           : S_ISFIFO(mode) ? VFIFO
           : S_ISSOCK(mode) ? VSOCK
           : S_ISCHR(mode)  ? VCHR
                            : VBLK;
}

std::vector<char> brokenRecord(const std::string& name, const BulkBehaviour& behaviour, int error) {
    Record record;
    const std::uint32_t named = behaviour.brokenHasName ? ATTR_CMN_NAME : 0;
    record.put(attribute_set_t{ATTR_CMN_RETURNED_ATTRS | ATTR_CMN_ERROR | named, 0, 0, 0, 0});
    record.put(static_cast<std::uint32_t>(error));
    if (behaviour.brokenHasName) {
        record.putName(name);
    }
    return record.finished();
}

std::vector<char> recordOf(int folder, const std::string& name, const attrlist& wanted,
                           const BulkBehaviour& behaviour) {
    struct statx found {};
    if (name == behaviour.broken) {
        return brokenRecord(name, behaviour, EIO);
    }
    if (!look(folder, name.c_str(), AT_SYMLINK_NOFOLLOW, found)) {
        return brokenRecord(name, behaviour, errno);
    }
    const bool isFile = S_ISREG(found.stx_mode);
    Record record;
    const std::uint32_t foreign = behaviour.foreign ? 0x2 : 0;  // ATTR_CMN_DEVID
    record.put(attribute_set_t{(wanted.commonattr & ~ATTR_CMN_ERROR) | foreign, 0, 0, isFile ? wanted.fileattr : 0, 0});
    record.putName(name);
    if (behaviour.foreign) {
        record.put(std::uint32_t{7});
    }
    record.put(vnodeType(found.stx_mode));
    record.putTime(found.stx_mtime);
    record.putTime(found.stx_atime);
    if (isFile) {
        record.put(static_cast<std::int64_t>(found.stx_blocks) * 512);
        record.put(static_cast<std::int64_t>(found.stx_blocks) * 512);
    }
    return record.finished();
}

// What this machine's kernel tells of a folder, a name at a time (getdents64(2)).
struct KernelEntry {
    std::uint64_t inode;
    std::int64_t next;
    unsigned short length;
    unsigned char type;
    char name[1];
};

bool isAsked(const attrlist& wanted) {
    return wanted.bitmapcount == ATTR_BIT_MAP_COUNT && (wanted.commonattr & ATTR_CMN_NAME) != 0 &&
           (wanted.commonattr & ATTR_CMN_RETURNED_ATTRS) != 0 && wanted.volattr == 0 && wanted.dirattr == 0 &&
           wanted.forkattr == 0;
}

int readInBulk(int folder, const attrlist& wanted, char* buffer, std::size_t size) {
    BulkBehaviour behaviour;
    {
        const std::lock_guard guard(files().lock);
        behaviour = files().bulk;
    }
    if (behaviour.failure != 0) {
        errno = behaviour.failure;
        return -1;
    }
    int count = 0;
    std::size_t used = 0;
    alignas(KernelEntry) std::array<char, 2048> entries;
    for (;;) {
        std::int64_t before = lseek(folder, 0, SEEK_CUR);
        const long got = syscall(SYS_getdents64, folder, entries.data(), entries.size());
        if (got <= 0) {
            return got < 0 ? -1 : count;
        }
        for (long at = 0; at < got;) {
            const auto* entry = reinterpret_cast<const KernelEntry*>(entries.data() + at);
            const std::string name = entry->name;
            const std::vector<char> record =
                name == "." || name == ".." ? std::vector<char>() : recordOf(folder, name, wanted, behaviour);
            if (used + record.size() > size || (count == behaviour.mostRecords && !record.empty())) {
                // This name and the rest of these come next time.
                lseek(folder, before, SEEK_SET);
                errno = ERANGE;
                return count > 0 ? count : -1;
            }
            std::copy(record.begin(), record.end(), buffer + used);
            used += record.size();
            count += record.empty() ? 0 : 1;
            files().records.fetch_add(record.empty() ? 0 : 1);
            before = entry->next;
            at += entry->length;
        }
        if (count >= behaviour.mostRecords) {
            return count;
        }
    }
}

}  // namespace

void makeDataless(const std::filesystem::path& item) {
    struct statx found {};
    if (!look(AT_FDCWD, item.c_str(), AT_SYMLINK_NOFOLLOW, found)) {
        misuse(item.string() + " is not there");
    }
    const std::lock_guard guard(files().lock);
    files().dataless.insert({deviceOf(found), found.stx_ino});
}

int fetched() {
    return files().fetched.load();
}

void setBulkBehaviour(BulkBehaviour behaviour) {
    const std::lock_guard guard(files().lock);
    files().bulk = std::move(behaviour);
}

int bulkRecords() {
    return files().records.load();
}

int fetchingPolicy() {
    return policyForFetching;
}

std::filesystem::path trashOfTests() {
    return testing::testHome() / ".Trash";
}

void takeWorldForReal(bool real) {
    files().worldIsReal = real;
}

void forgetFiles() {
    setBulkBehaviour({});
    const std::lock_guard guard(files().lock);
    files().dataless.clear();
    files().fetched = 0;
    files().records = 0;
    files().worldIsReal = false;
    policyForFetching = 0;
    policyForAccessTimes = 0;
}

}  // namespace vesk::darwin

using namespace vesk::darwin;

extern "C" {

// The linker leads here whatever Vesk's own code and its tests open (-Wl,--wrap).
int __wrap_openat(int folder, const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const auto mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    if (!mayOpen(folder, path, flags)) {
        return -1;
    }
    // A thread that asked for that leaves access times alone, as a descriptor can here.
    const int quietly = policyForAccessTimes != 0 ? __real_openat(folder, path, flags | O_NOATIME, mode) : -1;
    return quietly >= 0 ? quietly : __real_openat(folder, path, flags, mode);
}

int __wrap_open(const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const auto mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return mayOpen(AT_FDCWD, path, flags) ? __real_open(path, flags, mode) : -1;
}

// Part of the C++ ABI's name of vesk::isWorldOfCurrentUser().
bool __wrap__ZN4vesk20isWorldOfCurrentUserEv() {
    return files().worldIsReal;
}

// QFile::moveToTrash(const QString&, QString*), which asks -[NSFileManager trashItemAtURL:resultingItemURL:error:].
bool __wrap__ZN5QFile11moveToTrashERK7QStringPS0_(const QString& path, QString* where) {
    const std::filesystem::path item = path.toStdString();
    if (isDataless(AT_FDCWD, item.c_str(), AT_SYMLINK_NOFOLLOW) && policyForFetching == fetchingOff) {
        errno = EDEADLK;
        return false;
    }
    std::error_code failure;
    std::filesystem::create_directories(trashOfTests(), failure);
    const std::filesystem::path place = trashOfTests() / item.filename();
    const bool isFolder = std::filesystem::is_directory(std::filesystem::symlink_status(item, failure));
    if (syscall(SYS_renameat2, AT_FDCWD, item.c_str(), AT_FDCWD, place.c_str(), 1) != 0) {
        return false;
    }
    *where = QString::fromStdString(place.string() + (isFolder ? "/" : ""));
    return true;
}

int setiopolicy_np(int type, int scope, int policy) {
    if (scope != scopeOfThread || (type != typeFetching && type != typeAccessTimes)) {
        misuse("an I/O policy is set for more than this thread, or of a type that Vesk has no use for");
        errno = EINVAL;
        return -1;
    }
    (type == typeFetching ? policyForFetching : policyForAccessTimes) = policy;
    return 0;
}

int getiopolicy_np(int type, int scope) {
    if (scope != scopeOfThread) {
        errno = EINVAL;
        return -1;
    }
    return type == typeFetching ? policyForFetching : policyForAccessTimes;
}

int getattrlistbulk(int folder, void* wanted, void* buffer, std::size_t size, std::uint64_t options) {
    const auto& asked = *static_cast<const attrlist*>(wanted);
    if (!isAsked(asked) || options != 0) {
        misuse("getattrlistbulk is asked for other attributes than the model knows");
        errno = EINVAL;
        return -1;
    }
    return readInBulk(folder, asked, static_cast<char*>(buffer), size);
}

int renameatx_np(int fromFolder, const char* name, int toFolder, const char* newName, unsigned flags) {
    constexpr unsigned exclusively = 0x4;  // RENAME_EXCL
    if (flags != exclusively) {
        errno = EINVAL;
        return -1;
    }
    return static_cast<int>(syscall(SYS_renameat2, fromFolder, name, toFolder, newName, 1));
}

int darwin_fcntl(int descriptor, int command, long argument) {
    constexpr int fullFsync = 51;
    return command == fullFsync ? fsync(descriptor) : fcntl(descriptor, command, argument);
}

}  // extern "C"

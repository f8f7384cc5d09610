#include <dirent.h>
#include <fcntl.h>
#include <sys/attr.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#if __has_include(<sys/vnode.h>)
#include <sys/vnode.h>
#endif

#include <array>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <memory>

#include "platform/files/bulk_attributes.h"
#include "platform/files/descriptor.h"
#include "platform/files/directory_system.h"
#include "platform/threads/background.h"

namespace vesk {

namespace {

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

static_assert(bulk::name == ATTR_CMN_NAME);
static_assert(bulk::objectType == ATTR_CMN_OBJTYPE);
static_assert(bulk::modificationTime == ATTR_CMN_MODTIME);
static_assert(bulk::accessTime == ATTR_CMN_ACCTIME);
static_assert(bulk::error == ATTR_CMN_ERROR);
static_assert(bulk::returnedAttributes == ATTR_CMN_RETURNED_ATTRS);
static_assert(bulk::fileAllocatedSize == ATTR_FILE_ALLOCSIZE);
static_assert(bulk::fileDataAllocatedSize == ATTR_FILE_DATAALLOCSIZE);
static_assert(sizeof(attribute_set_t) == 20 && sizeof(attrreference_t) == 8 && sizeof(timespec) == 16);
#if __has_include(<sys/vnode.h>)
static_assert(bulk::regularFileType == VREG && bulk::folderType == VDIR && bulk::linkType == VLNK);
#endif

// A file that lies in the cloud alone ("dataless") must not come down because somebody looked for space: reading its
// attributes does not fetch it, opening a folder of that kind does, unless the thread refuses (setiopolicy_np(3)); the
// open then fails with EDEADLK. Reading a folder can set its access time, by which "Old downloads" judges, so a scan
// would change what the next one finds; macOS has no O_NOATIME, but the same call switches that off.
//
// A thread that refuses could not move such a folder to the Trash either. So a thread of a scan, which does nothing
// else, refuses for the rest of its life, and any other one while this lives.
class NoTrace {
public:
    NoTrace() {
        static thread_local bool promised = false;
        if (promised) {
            return;
        }
        before_ = getiopolicy_np(IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES, IOPOL_SCOPE_THREAD);
        accessTimesBefore_ = getiopolicy_np(IOPOL_TYPE_VFS_ATIME_UPDATES, IOPOL_SCOPE_THREAD);
        if (before_ < 0 || setiopolicy_np(IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES, IOPOL_SCOPE_THREAD,
                                          IOPOL_MATERIALIZE_DATALESS_FILES_OFF) != 0) {
            failure_ = errno;
            return;
        }
        // A courtesy that a system may decline.
        setiopolicy_np(IOPOL_TYPE_VFS_ATIME_UPDATES, IOPOL_SCOPE_THREAD, IOPOL_ATIME_UPDATES_OFF);
        promised = inBackground();
        ends_ = !promised;
    }
    ~NoTrace() {
        if (ends_) {
            const int kept = errno;
            setiopolicy_np(IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES, IOPOL_SCOPE_THREAD, before_);
            setiopolicy_np(IOPOL_TYPE_VFS_ATIME_UPDATES, IOPOL_SCOPE_THREAD,
                           accessTimesBefore_ < 0 ? 0 : accessTimesBefore_);
            errno = kept;
        }
    }
    NoTrace(const NoTrace&) = delete;
    NoTrace& operator=(const NoTrace&) = delete;

    /// The errno value with which the system refused the first promise, without which nothing is read; else 0.
    int failure() const { return failure_; }

private:
    int failure_ = 0;
    bool ends_ = false;
    int before_ = 0;
    int accessTimesBefore_ = 0;
};

using Visit = std::function<void(ListedItem)>;

// Names and kinds alone, by the calls that every system has; from the folder's beginning.
int readNamesOneByOne(int folder, const Visit& visit) {
    Descriptor copy(fcntl(folder, F_DUPFD_CLOEXEC, 0));
    if (!copy) {
        return errno;
    }
    struct Close {
        void operator()(DIR* stream) const { closedir(stream); }
    };
    const std::unique_ptr<DIR, Close> stream(fdopendir(copy.get()));
    if (!stream) {
        return errno;
    }
    copy.release();
    // The copy shares its position with the folder, which may have been read in part.
    rewinddir(stream.get());
    for (;;) {
        errno = 0;
        const dirent* item = readdir(stream.get());  // NOLINT(concurrency-mt-unsafe): a stream of this call's own
        if (item == nullptr) {
            return errno;
        }
        visitListed(item->d_name, item->d_type, visit);
    }
}

attrlist wantedAttributes() {
    attrlist wanted{};
    wanted.bitmapcount = ATTR_BIT_MAP_COUNT;
    wanted.commonattr = bulk::commonWanted;
    wanted.fileattr = bulk::fileWanted;
    return wanted;
}

// Hands over one item of a bulk reading. Returns 0, or the errno value of an item that has not even a name.
int visitBulkItem(const BulkItem& item, const Visit& visit) {
    if (item.name == nullptr) {
        return item.error;
    }
    if (!isDotOrDotDot(item.name)) {
        visit(ListedItem{item.name, item.kind, item.values ? &*item.values : nullptr});
    }
    return 0;
}

// Set when the system's records are not as this program knows them: then it asks for no more of them.
std::atomic<bool> bulkIsForeign = false;

struct BulkOutcome {
    /// 0, or an errno value.
    int failure = 0;
    /// Whether items were handed over before it ended.
    bool begun = false;
};

BulkOutcome readNamesInBulk(int folder, const Visit& visit) {
    std::array<std::byte, std::size_t{32} * 1024> buffer;
    attrlist wanted = wantedAttributes();
    BulkOutcome outcome;
    int nameless = 0;
    for (;;) {
        const int count = getattrlistbulk(folder, &wanted, buffer.data(), buffer.size(), 0);
        if (count <= 0) {
            outcome.failure = count < 0 ? errno : nameless;
            return outcome;
        }
        // All or nothing: a buffer that is half understood must not have handed over its first half.
        std::span<const std::byte> records = buffer;
        if (!holdsBulkItems(records, static_cast<std::size_t>(count))) {
            bulkIsForeign.store(true, std::memory_order_relaxed);
            outcome.failure = EIO;
            return outcome;
        }
        outcome.begun = true;
        for (int i = 0; i < count; ++i) {
            if (const int failure = visitBulkItem(*takeBulkItem(records), visit); failure != 0) {
                nameless = failure;
            }
        }
    }
}

}  // namespace

Descriptor openFolder(int parent, const char* path, LastLink lastLink) {
    const NoTrace noTrace;
    if (noTrace.failure() != 0) {
        errno = noTrace.failure();
        return {};
    }
    const int flags = openFlags | (lastLink == LastLink::doNotFollow ? O_NOFOLLOW : 0);
    return Descriptor(openat(parent, path, flags));
}

Descriptor openChildOnSameDevice(int parent, const char* name) {
    return openComparingDevices(parent, name);
}

int readNames(int folder, const Visit& visit) {
    const NoTrace noTrace;
    if (noTrace.failure() != 0) {
        return noTrace.failure();
    }
    if (!bulkIsForeign.load(std::memory_order_relaxed)) {
        const BulkOutcome outcome = readNamesInBulk(folder, visit);
        // A file system without this call says ENOTSUP at once; whatever else stops it at the start, the portable
        // calls have the last word. Later, starting over would hand items over twice.
        if (outcome.failure == 0 || outcome.begun) {
            return outcome.failure;
        }
    }
    return readNamesOneByOne(folder, visit);
}

int statItem(int folder, const char* name, ResourceValues& values, WantedDates /*dates*/) {
    struct stat found {};
    if (fstatat(folder, name, &found, AT_SYMLINK_NOFOLLOW) != 0) {
        return errno;
    }
    values.isRegularFile = S_ISREG(found.st_mode);
    values.isDirectory = S_ISDIR(found.st_mode);
    values.isSymbolicLink = S_ISLNK(found.st_mode);
    values.fileAllocatedSize.reset();
    // The kernel counts the blocks of all forks here.
    values.totalFileAllocatedSize = static_cast<std::int64_t>(found.st_blocks) * 512;
    values.contentAccessDate = dateFromUnix(found.st_atimespec.tv_sec, found.st_atimespec.tv_nsec);
    values.contentModificationDate = dateFromUnix(found.st_mtimespec.tv_sec, found.st_mtimespec.tv_nsec);
    return 0;
}

}  // namespace vesk

#include "platform/files/file_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

#include "platform/files/descriptor.h"
#include "platform/files/moving.h"

namespace vesk {

FileLock::State FileLock::tryTake(const std::filesystem::path& file) {
    if (makeFolders(file.parent_path(), 0700) != 0) {
        return State::impossible;
    }
    // Not blocking, so that a FIFO put in the file's place holds nobody up.
    Descriptor opened(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
    struct stat found {};
    if (!opened || fstat(opened.get(), &found) != 0 || !S_ISREG(found.st_mode)) {
        return State::impossible;
    }
    // flock and not fcntl: that one's lock would go as soon as this process closed any descriptor of the file.
    while (flock(opened.get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EINTR) {
            return errno == EWOULDBLOCK ? State::anothers : State::impossible;
        }
    }
    held_ = std::move(opened);
    return State::ours;
}

}  // namespace vesk

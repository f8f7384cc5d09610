#include "platform/files/reading.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/files/content.h"
#include "platform/files/descriptor.h"

namespace vesk {

namespace {

#ifdef O_NOATIME
constexpr int withoutTrace = O_NOATIME;
#else
constexpr int withoutTrace = 0;
#endif
constexpr int fileFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;

}  // namespace

std::optional<std::string> readWithoutTrace(const std::filesystem::path& path, std::int64_t most) {
    Descriptor file(open(path.c_str(), fileFlags | withoutTrace));
    if (!file && errno == EPERM) {  // only the owner may read without a trace
        file = Descriptor(open(path.c_str(), fileFlags));
    }
    struct stat found {};
    if (!file || fstat(file.get(), &found) != 0 || !S_ISREG(found.st_mode) || found.st_size > most) {
        return std::nullopt;
    }
    std::string bytes;
    return readAll(file.get(), static_cast<std::size_t>(most), bytes) == 0 ? std::optional(std::move(bytes))
                                                                           : std::nullopt;
}

}  // namespace vesk

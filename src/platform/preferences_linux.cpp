#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "platform/files.h"
#include "platform/folder_reader.h"
#include "platform/preferences.h"
#include "platform/world.h"

namespace vesk {

namespace {

constexpr std::string_view yes = "true\n";
constexpr std::string_view no = "false\n";

}  // namespace

Preferences::Preferences() : Preferences(world().configHome / "vesk") {
}

Preferences::Preferences(std::filesystem::path folder) : folder_(std::move(folder)) {
}

std::optional<bool> Preferences::boolean(std::string_view key) const {
    const std::optional<std::string> stored = data(key);
    if (!stored || (*stored != yes && *stored != no)) {
        return std::nullopt;
    }
    return *stored == yes;
}

bool Preferences::setBoolean(std::string_view key, bool value) {
    return setData(key, value ? yes : no);
}

std::optional<std::string> Preferences::data(std::string_view key) const {
    // Not blocking, so that a FIFO put in the file's place cannot stop the program's start.
    const Descriptor file(::open((folder_ / key).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat found {};
    if (!file || fstat(file.get(), &found) != 0 || !S_ISREG(found.st_mode)) {
        return std::nullopt;
    }
    std::string bytes;
    std::array<char, 64 * 1024> buffer{};
    for (;;) {
        const ssize_t got = ::read(file.get(), buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            return bytes;
        }
        bytes.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

bool Preferences::setData(std::string_view key, std::string_view bytes) {
    if (makeFolders(folder_, 0700) != 0) {
        return false;
    }
    std::string temporary = (folder_ / key).string() + ".XXXXXX";
    // mkostemp makes the file with mode 0600.
    Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file) {
        return false;
    }
    const bool written = writeAll(file.get(), bytes) == 0 && fsync(file.get()) == 0;
    file.close();
    if (!written || ::rename(temporary.c_str(), (folder_ / key).c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    const Descriptor folder = openFolder(AT_FDCWD, folder_.c_str(), LastLink::follow);
    if (folder) {
        fsync(folder.get());
    }
    return true;
}

}  // namespace vesk

#include "platform/system/preference_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <system_error>
#include <utility>

#include "platform/files/files.h"
#include "platform/files/folder_reader.h"

namespace vesk {

namespace {

constexpr std::string_view yes = "true\n";
constexpr std::string_view no = "false\n";

}  // namespace

StoredBytes readPreferenceFile(const std::filesystem::path& folder, std::string_view key) {
    constexpr bool unreadable = true;
    // Not blocking, so that a FIFO put in the file's place cannot stop the program's start.
    const Descriptor file(::open((folder / key).c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file) {
        const bool isNothing = errno == ENOENT || errno == ENOTDIR || errno == ELOOP || errno == ENXIO;
        return {std::nullopt, !isNothing};
    }
    struct stat found {};
    if (fstat(file.get(), &found) != 0) {
        return {std::nullopt, unreadable};
    }
    if (!S_ISREG(found.st_mode)) {
        return {};
    }
    std::string bytes;
    std::array<char, std::size_t{64} * 1024> buffer{};
    for (;;) {
        const ssize_t got = ::read(file.get(), buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return {std::nullopt, unreadable};
        }
        if (got == 0) {
            return {std::move(bytes)};
        }
        bytes.append(buffer.data(), static_cast<std::size_t>(got));
    }
}

bool writePreferenceFile(const std::filesystem::path& folder, std::string_view key, std::string_view bytes) {
    if (makeFolders(folder, 0700) != 0) {
        return false;
    }
    std::string temporary = (folder / key).string() + ".XXXXXX";
    // mkostemp makes the file with mode 0600.
    Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file) {
        return false;
    }
    const bool written = writeAll(file.get(), bytes) == 0 && fsync(file.get()) == 0;
    file.close();
    if (!written || ::rename(temporary.c_str(), (folder / key).c_str()) != 0) {
        ::unlink(temporary.c_str());
        return false;
    }
    const Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::follow);
    if (opened) {
        fsync(opened.get());
    }
    return true;
}

void removePreferenceFile(const std::filesystem::path& folder, std::string_view key) {
    ::unlink((folder / key).c_str());
}

std::optional<bool> booleanFromPreferenceFile(const std::optional<std::string>& stored) {
    if (!stored || (*stored != yes && *stored != no)) {
        return std::nullopt;
    }
    return *stored == yes;
}

std::string_view preferenceFileText(bool value) {
    return value ? yes : no;
}

}  // namespace vesk

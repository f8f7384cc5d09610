#include "platform/system/preference_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <system_error>
#include <utility>
#include <vector>

#include "platform/files/content.h"
#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/files/moving.h"

namespace vesk {

namespace {

constexpr std::string_view yes = "true\n";
constexpr std::string_view no = "false\n";

// What a temporary file's name has after its key's: a dot, and mkostemp's letters and digits in place of each X.
constexpr std::string_view temporarySuffix = ".XXXXXX";

bool isTemporaryName(std::string_view name) {
    constexpr std::string_view startOfKeys = "vesk.";
    if (name.size() <= startOfKeys.size() + temporarySuffix.size() || !name.starts_with(startOfKeys)) {
        return false;
    }
    const std::string_view end = name.substr(name.size() - temporarySuffix.size());
    return end.front() == '.' && std::all_of(end.begin() + 1, end.end(), [](char character) {
               return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
                      (character >= 'a' && character <= 'z');
           });
}

// Whether the name is that of a file as a write makes it, and nobody writes it any more.
bool isUnfinished(int folder, const char* name) {
    const Descriptor file(openat(folder, name, O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat found {};
    return file && fstat(file.get(), &found) == 0 && S_ISREG(found.st_mode) && found.st_uid == geteuid() &&
           found.st_nlink == 1 && flock(file.get(), LOCK_EX | LOCK_NB) == 0;
}

}  // namespace

std::size_t preferenceFileSize(const std::filesystem::path& folder, std::string_view key) {
    struct stat found {};
    const bool isFile = ::stat((folder / key).c_str(), &found) == 0 && S_ISREG(found.st_mode);
    return isFile ? static_cast<std::size_t>(found.st_size) : 0;
}

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
    if (static_cast<std::size_t>(found.st_size) > Preferences::largestValue) {
        return {};
    }
    std::string bytes;
    switch (readAll(file.get(), Preferences::largestValue, bytes)) {
        case 0:
            return {std::move(bytes)};
        case EFBIG:
            return {};
        default:
            return {std::nullopt, unreadable};
    }
}

bool writePreferenceFile(const std::filesystem::path& folder, std::string_view key, std::string_view bytes) {
    if (bytes.size() > Preferences::largestValue || makeFolders(folder, 0700) != 0) {
        return false;
    }
    std::string temporary = (folder / key).string() + std::string(temporarySuffix);
    // mkostemp makes the file with mode 0600.
    Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file) {
        return false;
    }
    flock(file.get(), LOCK_EX | LOCK_NB);  // says to removeUnfinishedPreferenceFiles that somebody is at work
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

void removeUnfinishedPreferenceFiles(const std::filesystem::path& folder) {
    const Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::follow);
    if (!opened) {
        return;
    }
    std::vector<std::string> names;
    readNames(opened.get(), [&](ListedItem item) {
        if (isTemporaryName(item.name)) {
            names.emplace_back(item.name);
        }
    });
    for (const std::string& name : names) {
        if (isUnfinished(opened.get(), name.c_str())) {
            unlinkat(opened.get(), name.c_str(), 0);
        }
    }
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

// Which errors fit which file-system call: the table that the fault library (fault_library.cpp) uses.
#pragma once

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

namespace vesk::testing {

struct Error {
    const char* name;
    int number;
};

inline constexpr std::array<Error, 10> errors = {{{"EACCES", EACCES},
                                                  {"EPERM", EPERM},
                                                  {"EIO", EIO},
                                                  {"ENOSPC", ENOSPC},
                                                  {"EMFILE", EMFILE},
                                                  {"ENOENT", ENOENT},
                                                  {"EINTR", EINTR},
                                                  {"EXDEV", EXDEV},
                                                  {"EROFS", EROFS},
                                                  {"KILL", 0}}};

enum class Call { open, make, list, look, resolve, makeFolder, rename, link, remove, read, write, sync, close, volume };

struct Fit {
    Call call;
    const char* name;
    // The errors that Linux documents for the call, on a local disk, on NFS or on FUSE; killing fits all.
    const char* errors;
};

inline constexpr std::array<Fit, 14> fits = {{
    {Call::open, "open", "EACCES EPERM EIO EMFILE ENOENT EINTR"},
    {Call::make, "open to make a file", "EACCES EPERM EIO ENOSPC EMFILE ENOENT EINTR EROFS"},
    {Call::list, "getdents", "EIO ENOENT EINTR"},
    {Call::look, "stat", "EACCES EIO ENOENT"},
    {Call::resolve, "readlink or realpath", "EACCES EIO ENOENT"},
    {Call::makeFolder, "mkdir", "EACCES EPERM EIO ENOSPC ENOENT EROFS"},
    {Call::rename, "rename", "EACCES EPERM EIO ENOSPC ENOENT EXDEV EROFS"},
    {Call::link, "link", "EACCES EPERM EIO ENOSPC ENOENT EXDEV EROFS"},
    {Call::remove, "unlink or rmdir", "EACCES EPERM EIO ENOENT EROFS"},
    {Call::read, "read", "EIO EINTR"},
    {Call::write, "write", "EIO ENOSPC EINTR"},
    {Call::sync, "fsync", "EIO ENOSPC EINTR EROFS"},
    {Call::close, "close", "EIO ENOSPC EINTR"},
    {Call::volume, "statvfs", "EACCES EIO ENOENT EINTR"},
}};

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < fits.size(); ++i) {
        if (static_cast<std::size_t>(fits[i].call) != i) {
            return false;
        }
    }
    return true;
}
static_assert(isInOrder());

inline const Fit& fitOf(Call call) {
    return fits[static_cast<std::size_t>(call)];
}

inline bool changesNames(Call call) {
    return call == Call::makeFolder || call == Call::rename || call == Call::link || call == Call::remove;
}

inline bool canFail(const Fit& fit, std::size_t error) {
    // No name is part of another.
    return errors[error].number == 0 || std::strstr(fit.errors, errors[error].name) != nullptr;
}

}  // namespace vesk::testing

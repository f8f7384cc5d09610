// The times of a stat result, whose fields have other names on each system.
#pragma once

#include <sys/stat.h>

namespace vesk::testing {

#ifdef __APPLE__
inline timespec modified(const struct stat& seen) {
    return seen.st_mtimespec;
}
inline timespec changed(const struct stat& seen) {
    return seen.st_ctimespec;
}
inline timespec accessed(const struct stat& seen) {
    return seen.st_atimespec;
}
#else
inline timespec modified(const struct stat& seen) {
    return seen.st_mtim;
}
inline timespec changed(const struct stat& seen) {
    return seen.st_ctim;
}
inline timespec accessed(const struct stat& seen) {
    return seen.st_atim;
}
#endif

}  // namespace vesk::testing

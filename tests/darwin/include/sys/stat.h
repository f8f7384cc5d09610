// Darwin's struct stat, by the names that its <sys/stat.h> gives; see tests/darwin/README.md.
#pragma once
#pragma GCC system_header

#include_next <sys/stat.h>

#include <cstdint>

struct darwin_stat {
    std::int32_t st_dev;
    mode_t st_mode;
    std::uint16_t st_nlink;
    std::uint64_t st_ino;
    uid_t st_uid;
    timespec st_atimespec;
    timespec st_mtimespec;
    timespec st_ctimespec;
    timespec st_birthtimespec;
    off_t st_size;
    std::int64_t st_blocks;
    std::uint32_t st_gen;
};

extern "C" {
int darwin_stat(const char* path, struct darwin_stat* found);
int darwin_lstat(const char* path, struct darwin_stat* found);
int darwin_fstat(int descriptor, struct darwin_stat* found);
int darwin_fstatat(int folder, const char* path, struct darwin_stat* found, int flags);
}

#define stat darwin_stat
#define lstat darwin_lstat
#define fstat darwin_fstat
#define fstatat darwin_fstatat

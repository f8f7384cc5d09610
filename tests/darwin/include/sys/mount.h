// Darwin's struct statfs, as far as Vesk reads it; see tests/darwin/README.md.
#pragma once
#pragma GCC system_header

#include <cstdint>

struct darwin_statfs {
    struct {
        std::int32_t val[2];
    } f_fsid;
    std::uint32_t f_flags;
    char f_fstypename[16];
};

constexpr std::uint32_t MNT_NOATIME = 0x10000000;

extern "C" {
int darwin_statfs(const char* path, struct darwin_statfs* found);
int darwin_fstatfs(int descriptor, struct darwin_statfs* found);
}

#define statfs darwin_statfs
#define fstatfs darwin_fstatfs

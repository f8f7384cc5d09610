// F_FULLFSYNC, beside what every system has.
#pragma once
#pragma GCC system_header

#include_next <fcntl.h>

constexpr int F_FULLFSYNC = 51;

extern "C" int darwin_fcntl(int descriptor, int command, long argument);

inline int darwinFcntl(int descriptor, int command, long argument = 0) {
    return darwin_fcntl(descriptor, command, argument);
}

#define fcntl darwinFcntl

// F_FULLFSYNC and O_EVTONLY, beside what every system has.
#pragma once
#pragma GCC system_header

#include_next <fcntl.h>

#include <cstdint>

constexpr int F_FULLFSYNC = 51;
constexpr std::uint32_t O_EVTONLY = 0x00008000;

extern "C" int darwin_fcntl(int descriptor, int command, long argument);

inline int darwinFcntl(int descriptor, int command, long argument = 0) {
    return darwin_fcntl(descriptor, command, argument);
}

#define fcntl darwinFcntl

// libproc's calls, which tell what processes have open; see tests/darwin/README.md.
#pragma once

#include <sys/types.h>

#include <cstdint>

extern "C" {
int proc_listpids(std::uint32_t kind, std::uint32_t of, void* buffer, int size);
int proc_pidinfo(int process, int kind, std::uint64_t argument, void* buffer, int size);
int proc_pidfdinfo(int process, int descriptor, int kind, void* buffer, int size);
int proc_pidpath(int process, void* buffer, std::uint32_t size);
}

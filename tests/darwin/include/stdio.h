// renameatx_np(2), beside what every system has.
#pragma once
#pragma GCC system_header

#include_next <stdio.h>

#define RENAME_SWAP 0x00000002
#define RENAME_EXCL 0x00000004

extern "C" int renameatx_np(int fromFolder, const char* name, int toFolder, const char* newName, unsigned flags);

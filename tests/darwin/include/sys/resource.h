// setiopolicy_np(3), beside what every system has.
#pragma once
#pragma GCC system_header

#include_next <sys/resource.h>

constexpr int IOPOL_TYPE_VFS_ATIME_UPDATES = 2;
constexpr int IOPOL_TYPE_VFS_MATERIALIZE_DATALESS_FILES = 3;
constexpr int IOPOL_SCOPE_PROCESS = 0;
constexpr int IOPOL_SCOPE_THREAD = 1;
constexpr int IOPOL_ATIME_UPDATES_DEFAULT = 0;
constexpr int IOPOL_ATIME_UPDATES_OFF = 1;
constexpr int IOPOL_MATERIALIZE_DATALESS_FILES_DEFAULT = 0;
constexpr int IOPOL_MATERIALIZE_DATALESS_FILES_OFF = 1;
constexpr int IOPOL_MATERIALIZE_DATALESS_FILES_ON = 2;

extern "C" {
int setiopolicy_np(int type, int scope, int policy);
int getiopolicy_np(int type, int scope);
}

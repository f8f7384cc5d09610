// Darwin's posix_spawn(2), which follows other rules than Linux's; see tests/darwin/model/spawn.cpp.
#pragma once

#include <sys/types.h>
#include <csignal>

struct DarwinFileActions;
struct DarwinSpawnAttributes;
using darwin_file_actions_t = DarwinFileActions*;
using darwin_spawnattr_t = DarwinSpawnAttributes*;

#define posix_spawn_file_actions_t darwin_file_actions_t
#define posix_spawnattr_t darwin_spawnattr_t
#define posix_spawn darwin_spawn
#define posix_spawn_file_actions_init darwin_file_actions_init
#define posix_spawn_file_actions_destroy darwin_file_actions_destroy
#define posix_spawn_file_actions_adddup2 darwin_file_actions_adddup2
#define posix_spawn_file_actions_addinherit_np darwin_file_actions_addinherit_np
#define posix_spawnattr_init darwin_spawnattr_init
#define posix_spawnattr_destroy darwin_spawnattr_destroy
#define posix_spawnattr_setsigmask darwin_spawnattr_setsigmask
#define posix_spawnattr_setsigdefault darwin_spawnattr_setsigdefault
#define posix_spawnattr_setpgroup darwin_spawnattr_setpgroup
#define posix_spawnattr_setflags darwin_spawnattr_setflags

constexpr short POSIX_SPAWN_SETPGROUP = 0x0002;
constexpr short POSIX_SPAWN_SETSIGDEF = 0x0004;
constexpr short POSIX_SPAWN_SETSIGMASK = 0x0008;
constexpr short POSIX_SPAWN_CLOEXEC_DEFAULT = 0x4000;

extern "C" {
int posix_spawn_file_actions_init(posix_spawn_file_actions_t* actions);
int posix_spawn_file_actions_destroy(posix_spawn_file_actions_t* actions);
int posix_spawn_file_actions_adddup2(posix_spawn_file_actions_t* actions, int from, int to);
int posix_spawn_file_actions_addinherit_np(posix_spawn_file_actions_t* actions, int descriptor);
int posix_spawnattr_init(posix_spawnattr_t* attributes);
int posix_spawnattr_destroy(posix_spawnattr_t* attributes);
int posix_spawnattr_setsigmask(posix_spawnattr_t* attributes, const sigset_t* mask);
int posix_spawnattr_setsigdefault(posix_spawnattr_t* attributes, const sigset_t* set);
int posix_spawnattr_setpgroup(posix_spawnattr_t* attributes, pid_t group);
int posix_spawnattr_setflags(posix_spawnattr_t* attributes, short flags);
int posix_spawn(pid_t* process, const char* path, const posix_spawn_file_actions_t* actions,
                const posix_spawnattr_t* attributes, char* const* arguments, char* const* environment);
}

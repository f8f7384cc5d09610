// What libproc tells of a process, as far as Vesk reads it; see tests/darwin/README.md.
#pragma once

#include <sys/un.h>

#include <cstdint>

constexpr int DARWIN_MAXPATHLEN = 1024;

constexpr std::uint32_t PROC_UID_ONLY = 4;
constexpr int PROC_PIDLISTFDS = 1;
constexpr int PROC_PIDREGIONPATHINFO = 8;
constexpr int PROC_PIDVNODEPATHINFO = 9;
constexpr int PROC_PIDFDVNODEPATHINFO = 2;
constexpr int PROC_PIDFDSOCKETINFO = 3;
constexpr std::size_t PROC_PIDPATHINFO_MAXSIZE = std::size_t{4} * DARWIN_MAXPATHLEN;
constexpr std::uint32_t PROX_FDTYPE_VNODE = 1;
constexpr std::uint32_t PROX_FDTYPE_SOCKET = 2;
constexpr int SOCKINFO_UN = 3;

struct vinfo_stat {
    std::uint32_t vst_dev;
    std::uint64_t vst_ino;
};

struct vnode_info {
    vinfo_stat vi_stat;
};

struct vnode_info_path {
    vnode_info vip_vi;
    char vip_path[DARWIN_MAXPATHLEN];
};

struct proc_vnodepathinfo {
    vnode_info_path pvi_cdir;
    vnode_info_path pvi_rdir;
};

struct proc_fdinfo {
    std::int32_t proc_fd;
    std::uint32_t proc_fdtype;
};

struct proc_fileinfo {
    std::uint32_t fi_openflags;
};

struct vnode_fdinfowithpath {
    proc_fileinfo pfi;
    vnode_info_path pvip;
};

struct un_sockinfo {
    union {
        sockaddr_un ua_sun;
        char ua_dummy[255];
    } unsi_addr;
};

struct socket_info {
    int soi_kind;
    union {
        un_sockinfo pri_un;
    } soi_proto;
};

struct socket_fdinfo {
    proc_fileinfo pfi;
    socket_info psi;
};

struct proc_regioninfo {
    std::uint64_t pri_address;
    std::uint64_t pri_size;
};

struct proc_regionwithpathinfo {
    proc_regioninfo prp_prinfo;
    vnode_info_path prp_vip;
};

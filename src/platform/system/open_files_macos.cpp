// macOS tells it by libproc's calls, process by process. Other users' processes refuse (EPERM).

#include <fcntl.h>
#include <libproc.h>
#include <sys/proc_info.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>

#include "platform/system/open_files.h"
#include "platform/system/open_files_system.h"

namespace vesk {

namespace {

void addPath(const vnode_info_path& info, std::vector<UsedFile>& used) {
    if (info.vip_path[0] == '/') {
        used.push_back(
            {info.vip_vi.vi_stat.vst_dev, info.vip_vi.vi_stat.vst_ino, static_cast<const char*>(info.vip_path)});
    }
}

void addOpened(pid_t process, std::vector<UsedFile>& used) {
    const int size = proc_pidinfo(process, PROC_PIDLISTFDS, 0, nullptr, 0);
    if (size <= 0) {
        return;
    }
    std::vector<proc_fdinfo> files(static_cast<std::size_t>(size) / sizeof(proc_fdinfo));
    const int filled = proc_pidinfo(process, PROC_PIDLISTFDS, 0, files.data(), size);
    files.resize(filled > 0 ? static_cast<std::size_t>(filled) / sizeof(proc_fdinfo) : 0);
    for (const proc_fdinfo& file : files) {
        if (file.proc_fdtype == PROX_FDTYPE_VNODE) {
            vnode_fdinfowithpath info{};
            // Who opened it only to be told of changes (O_EVTONLY) does not use it.
            if (proc_pidfdinfo(process, file.proc_fd, PROC_PIDFDVNODEPATHINFO, &info, sizeof info) == sizeof info &&
                (info.pfi.fi_openflags & O_EVTONLY) == 0) {
                addPath(info.pvip, used);
            }
        } else if (file.proc_fdtype == PROX_FDTYPE_SOCKET) {
            socket_fdinfo info{};
            if (proc_pidfdinfo(process, file.proc_fd, PROC_PIDFDSOCKETINFO, &info, sizeof info) == sizeof info &&
                info.psi.soi_kind == SOCKINFO_UN) {
                const char* const path = static_cast<const char*>(info.psi.soi_proto.pri_un.unsi_addr.ua_sun.sun_path);
                FilePlace place;
                if (path[0] == '/' && findPlace(path, place)) {
                    used.push_back({place.device, place.inode, path});
                }
            }
        }
    }
}

void addMapped(pid_t process, std::vector<UsedFile>& used) {
    proc_regionwithpathinfo region{};
    std::uint64_t address = 0;
    while (proc_pidinfo(process, PROC_PIDREGIONPATHINFO, address, &region, sizeof region) == sizeof region) {
        addPath(region.prp_vip, used);
        const std::uint64_t next = region.prp_prinfo.pri_address + region.prp_prinfo.pri_size;
        if (next <= address) {
            return;
        }
        address = next;
    }
}

}  // namespace

bool findPlace(const char* path, FilePlace& place) {
    struct stat found {};
    if (lstat(path, &found) != 0) {
        return false;
    }
    // Signed here, unsigned in vinfo_stat.
    place = {static_cast<std::uint32_t>(found.st_dev), found.st_ino, 0, S_ISDIR(found.st_mode), true};
    return true;
}

bool listUsedFiles(std::vector<UsedFile>& used, LockList& /*locks*/) {
    const int size = proc_listpids(PROC_UID_ONLY, getuid(), nullptr, 0);
    if (size <= 0) {
        return false;
    }
    std::vector<pid_t> processes(static_cast<std::size_t>(size) / sizeof(pid_t));
    const int filled = proc_listpids(PROC_UID_ONLY, getuid(), processes.data(), size);
    processes.resize(filled > 0 ? static_cast<std::size_t>(filled) / sizeof(pid_t) : 0);
    for (const pid_t process : processes) {
        if (process == getpid() || process == 0) {
            continue;
        }
        proc_vnodepathinfo folders{};
        if (proc_pidinfo(process, PROC_PIDVNODEPATHINFO, 0, &folders, sizeof folders) == sizeof folders) {
            addPath(folders.pvi_cdir, used);
            addPath(folders.pvi_rdir, used);
        }
        std::array<char, PROC_PIDPATHINFO_MAXSIZE> program{};
        FilePlace place;
        if (proc_pidpath(process, program.data(), program.size()) > 0 && findPlace(program.data(), place)) {
            used.push_back({place.device, place.inode, program.data()});
        }
        addOpened(process, used);
        addMapped(process, used);
    }
    return !processes.empty();
}

}  // namespace vesk

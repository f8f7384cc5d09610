#include "darwin/model/processes.h"

#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "darwin/include/libproc.h"
#include "darwin/include/sys/proc_info.h"
#include "darwin/model/misuse.h"

namespace vesk::darwin {

namespace {

constexpr std::uint32_t eventsOnly = 0x8000;  // O_EVTONLY
constexpr std::size_t spare = 20;             // what the kernel adds to a size, since more may come
constexpr std::uint64_t pageSize = 0x4000;

std::vector<Process>& processes() {
    static std::vector<Process>& instance = *new std::vector<Process>;
    return instance;
}

const Process* processOf(int id) {
    const auto found =
        std::find_if(processes().begin(), processes().end(), [id](const Process& p) { return p.id == id; });
    if (found == processes().end() || found->refuses) {
        errno = found == processes().end() ? ESRCH : EPERM;
        return nullptr;
    }
    return &*found;
}

vnode_info_path vnodeOf(const std::string& path) {
    vnode_info_path result{};
    struct stat found {};
    if (!path.empty() && ::stat(path.c_str(), &found) == 0) {
        result.vip_vi.vi_stat = {(major(found.st_dev) << 24U) | minor(found.st_dev), found.st_ino};
        path.copy(result.vip_path, sizeof result.vip_path - 1);
    }
    return result;
}

// Fails, as the kernel does, where there is no room for all of it.
template <typename Information>
int answer(const Information& information, void* buffer, int size) {
    if (size < static_cast<int>(sizeof information)) {
        errno = ENOMEM;
        return 0;
    }
    std::memcpy(buffer, &information, sizeof information);
    return sizeof information;
}

// As many as there is room for; without a buffer, how much room to make.
template <typename Item>
int list(const std::vector<Item>& items, void* buffer, int size) {
    if (buffer == nullptr) {
        return static_cast<int>((items.size() + spare) * sizeof(Item));
    }
    const std::size_t count = std::min(items.size(), static_cast<std::size_t>(size) / sizeof(Item));
    std::copy_n(items.begin(), count, static_cast<Item*>(buffer));
    return static_cast<int>(count * sizeof(Item));
}

// Descriptors in this order: opened, watched, sockets, from 3.
std::vector<proc_fdinfo> descriptorsOf(const Process& process) {
    std::vector<proc_fdinfo> result;
    const std::size_t files = process.opened.size() + process.watched.size();
    for (std::size_t i = 0; i < files + process.boundSockets.size(); ++i) {
        result.push_back({static_cast<std::int32_t>(i + 3), i < files ? PROX_FDTYPE_VNODE : PROX_FDTYPE_SOCKET});
    }
    return result;
}

int tellOfVnode(const Process& process, std::size_t at, void* buffer, int size) {
    const std::size_t opened = process.opened.size();
    if (at >= opened + process.watched.size()) {
        misuse("a socket is asked about as a file");
        return 0;
    }
    vnode_fdinfowithpath information{};
    information.pfi.fi_openflags = at < opened ? 1 : 1 | eventsOnly;
    information.pvip = vnodeOf(at < opened ? process.opened[at] : process.watched[at - opened]);
    return answer(information, buffer, size);
}

int tellOfSocket(const Process& process, std::size_t at, void* buffer, int size) {
    const std::size_t files = process.opened.size() + process.watched.size();
    if (at < files || at - files >= process.boundSockets.size()) {
        misuse("a file is asked about as a socket");
        return 0;
    }
    socket_fdinfo information{};
    information.psi.soi_kind = SOCKINFO_UN;
    sockaddr_un& address = information.psi.soi_proto.pri_un.unsi_addr.ua_sun;
    process.boundSockets[at - files].copy(address.sun_path, sizeof address.sun_path - 1);
    return answer(information, buffer, size);
}

// Of the region at an address, or the next one above it. Between those of files lies memory of no file.
int tellOfRegion(const Process& process, std::uint64_t address, void* buffer, int size) {
    const std::uint64_t index = (address + pageSize - 1) / pageSize;
    if (index >= 2 * process.mapped.size()) {
        errno = EINVAL;
        return 0;
    }
    proc_regionwithpathinfo information{};
    information.prp_prinfo = {index * pageSize, pageSize};
    information.prp_vip = vnodeOf(index % 2 == 1 ? process.mapped[index / 2] : std::string());
    return answer(information, buffer, size);
}

}  // namespace

void setProcesses(std::vector<Process> made) {
    processes() = std::move(made);
}

}  // namespace vesk::darwin

using namespace vesk::darwin;

extern "C" {

int proc_listpids(std::uint32_t kind, std::uint32_t of, void* buffer, int size) {
    if (kind != PROC_UID_ONLY || of != getuid()) {
        misuse("other processes are listed than this user's");
        return 0;
    }
    std::vector<pid_t> ids = {getpid()};
    for (const Process& process : processes()) {
        ids.push_back(process.id);
    }
    return list(ids, buffer, size);
}

int proc_pidinfo(int id, int kind, std::uint64_t argument, void* buffer, int size) {
    const Process* const process = processOf(id);
    if (process == nullptr) {
        return 0;
    }
    switch (kind) {
        case PROC_PIDLISTFDS:
            return list(descriptorsOf(*process), buffer, size);
        case PROC_PIDVNODEPATHINFO: {
            proc_vnodepathinfo information{};
            information.pvi_cdir = vnodeOf(process->workingFolder);
            return answer(information, buffer, size);
        }
        case PROC_PIDREGIONPATHINFO:
            return tellOfRegion(*process, argument, buffer, size);
        default:
            misuse("proc_pidinfo is asked for what the model does not know");
            return 0;
    }
}

int proc_pidfdinfo(int id, int descriptor, int kind, void* buffer, int size) {
    const Process* const process = processOf(id);
    if (process == nullptr || descriptor < 3) {
        return 0;
    }
    const auto at = static_cast<std::size_t>(descriptor) - 3;
    return kind == PROC_PIDFDVNODEPATHINFO ? tellOfVnode(*process, at, buffer, size)
                                           : tellOfSocket(*process, at, buffer, size);
}

int proc_pidpath(int id, void* buffer, std::uint32_t size) {
    const Process* const process = processOf(id);
    if (process == nullptr || size <= process->program.size()) {
        return 0;
    }
    std::memcpy(buffer, process->program.c_str(), process->program.size() + 1);
    return static_cast<int>(process->program.size());
}

}  // extern "C"

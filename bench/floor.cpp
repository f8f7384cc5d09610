// vesk-floor FOLDER [THREADS]: only the work that no program can avoid. On all cores, opens every folder below FOLDER,
// reads its names, stats each regular file once and closes the folder. It reads no dates, ignores errors that a
// prepared tree does not have, and does not limit its descriptors. Prints bytes, files and seconds. Vesk cannot be
// faster.

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cinttypes>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

struct OpenFolder {
    int number;
    explicit OpenFolder(int opened) : number(opened) {}
    OpenFolder(const OpenFolder&) = delete;
    OpenFolder& operator=(const OpenFolder&) = delete;
    ~OpenFolder() { close(number); }
};

// NUL-separated names in one folder: of subfolders to enter, or of files to stat.
struct Job {
    std::shared_ptr<OpenFolder> folder;
    std::string names;
    bool areFiles = false;
};

// Jobs that threads have handed over.
std::mutex lock;
std::condition_variable changed;
std::vector<Job> spare;
std::atomic<int> hungry = 0;
int threads = 0;

std::atomic<std::int64_t> allBytes = 0;
std::atomic<std::int64_t> allFiles = 0;

class Worker {
public:
    void run(std::vector<Job> first) {
        jobs_ = std::move(first);
        do {
            while (!jobs_.empty()) {
                Job job = std::move(jobs_.back());
                jobs_.pop_back();
                if (hungry.load(std::memory_order_relaxed) > 0 && !jobs_.empty()) {
                    giveAway();
                }
                work(job);
            }
        } while (takeSpare());
        allBytes += bytes_;
        allFiles += files_;
    }

private:
    // The oldest job is the nearest to the top, so it has the most below it.
    void giveAway() {
        const std::lock_guard guard(lock);
        spare.push_back(std::move(jobs_.front()));
        jobs_.erase(jobs_.begin());
        changed.notify_one();
    }

    bool takeSpare() {
        std::unique_lock guard(lock);
        if (++hungry == threads) {
            changed.notify_all();
        }
        changed.wait(guard, [] { return !spare.empty() || hungry == threads; });
        if (spare.empty()) {
            return false;
        }
        --hungry;
        jobs_.push_back(std::move(spare.back()));
        spare.pop_back();
        return true;
    }

    void work(const Job& job) {
        for (const char* name = job.names.data(); name < job.names.data() + job.names.size();
             name += std::strlen(name) + 1) {
            if (job.areFiles) {
                look(job.folder->number, name);
            } else {
                read(openat(job.folder->number, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NOATIME));
            }
        }
    }

    void look(int folder, const char* name) {
        struct statx found;
        if (statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC, STATX_BLOCKS | STATX_ATIME, &found) == 0) {
            bytes_ += static_cast<std::int64_t>(found.stx_blocks) * 512;
            ++files_;
        }
    }

    void read(int number) {
        const auto folder = std::make_shared<OpenFolder>(number);
        Job subfolders{folder, {}, false};
        bool several = false;
        for (;;) {
            const long got = syscall(SYS_getdents64, number, buffer_, sizeof buffer_);
            if (got <= 0) {
                break;
            }
            Job files{folder, {}, true};
            for (long at = 0; at < got;) {
                const auto* item = reinterpret_cast<const dirent64*>(buffer_ + at);
                at += item->d_reclen;
                if (item->d_type == DT_REG) {
                    if (several) {
                        files.names.append(item->d_name, std::strlen(item->d_name) + 1);
                    } else {
                        look(number, item->d_name);
                    }
                } else if (item->d_type == DT_DIR && std::strcmp(item->d_name, ".") != 0 &&
                           std::strcmp(item->d_name, "..") != 0) {
                    subfolders.names.append(item->d_name, std::strlen(item->d_name) + 1);
                }
            }
            // A folder that does not fit the buffer is large enough to share.
            several = true;
            if (!files.names.empty()) {
                jobs_.push_back(std::move(files));
                if (hungry.load(std::memory_order_relaxed) > 0) {
                    giveAway();
                }
            }
        }
        if (!subfolders.names.empty()) {
            jobs_.push_back(std::move(subfolders));
        }
    }

    std::vector<Job> jobs_;
    std::int64_t bytes_ = 0;
    std::int64_t files_ = 0;
    alignas(dirent64) char buffer_[32 * 1024];
};

}  // namespace

int main(int count, char** arguments) {
    if (count < 2) {
        std::fprintf(stderr, "usage: vesk-floor FOLDER [THREADS]\n");
        return 2;
    }
    rlimit descriptors{};
    getrlimit(RLIMIT_NOFILE, &descriptors);
    descriptors.rlim_cur = descriptors.rlim_max;
    setrlimit(RLIMIT_NOFILE, &descriptors);

    const auto start = std::chrono::steady_clock::now();
    const auto here = std::make_shared<OpenFolder>(open(".", O_RDONLY | O_DIRECTORY));
    const std::string top = arguments[1];
    threads = count > 2 ? std::atoi(arguments[2]) : static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
    std::vector<std::thread> others;
    for (int i = 1; i < threads; ++i) {
        others.emplace_back([] { std::make_unique<Worker>()->run({}); });
    }
    std::make_unique<Worker>()->run({Job{here, std::string(top.c_str(), top.size() + 1), false}});
    for (std::thread& other : others) {
        other.join();
    }
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::printf("%" PRId64 " bytes %" PRId64 " files %.4f seconds\n", allBytes.load(), allFiles.load(), took.count());
    return 0;
}

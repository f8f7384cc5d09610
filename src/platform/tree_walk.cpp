#include "platform/tree_walk.h"

#include <fcntl.h>
#include <oneapi/tbb/enumerable_thread_specific.h>
#include <oneapi/tbb/parallel_for_each.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/background.h"
#include "platform/folder_reader.h"
#include "platform/thread_order.h"

namespace vesk {

namespace {

// Stands for all that the tasks of walks hand to each other. Not a walk's own: a task would have to read where it is
// before it could be told that it may.
char order = 0;

// Descriptors that all walks of this process hold open for folders whose subfolders wait.
std::atomic<int> heldFolders = 0;

// How many of them there may be now. Each thread in a walk needs three more, the rest of the program some dozens.
int heldFoldersLimit() {
    constexpr rlim_t most = 4096;
    constexpr int whenUnknown = 64;
    rlimit allowed{};
    if (getrlimit(RLIMIT_NOFILE, &allowed) != 0) {
        return whenUnknown;
    }
    return static_cast<int>(std::min(allowed.rlim_cur / 2, most));
}

// A folder that stays open until the last of its subfolders has been opened relative to it.
class HeldFolder {
public:
    explicit HeldFolder(Descriptor descriptor) : descriptor_(std::move(descriptor)) {
        heldFolders.fetch_add(1, std::memory_order_relaxed);
    }
    HeldFolder(const HeldFolder&) = delete;
    HeldFolder& operator=(const HeldFolder&) = delete;
    ~HeldFolder() { heldFolders.fetch_sub(1, std::memory_order_relaxed); }

    int descriptor() const { return descriptor_.get(); }

private:
    Descriptor descriptor_;
};

struct WaitingFolder {
    std::shared_ptr<const HeldFolder> parent;
    std::string name;
};

// Somebody else in the process may use up the descriptors for a moment; that must not change a figure.
template <typename Open>
Descriptor openPatiently(Open open) {
    constexpr int tries = 200;
    constexpr auto pause = std::chrono::milliseconds(5);
    Descriptor opened = open();
    for (int i = 0; i < tries && !opened && (errno == EMFILE || errno == ENFILE); ++i) {
        std::this_thread::sleep_for(pause);
        opened = open();
    }
    return opened;
}

using ErrorHandler = std::function<void(const PlatformError&)>;

// Hands every regular file of an open folder to `visitor`, every subfolder's name to `addSubfolder`.
void readFolder(int folder, const FileVisitor& visitor, const ErrorHandler& onError,
                const std::function<void(const char*)>& addSubfolder) {
    const int failure = readNames(folder, [&](ListedItem item) {
        if (item.kind == ItemKind::folder) {
            addSubfolder(item.name);
            return;
        }
        if (item.kind == ItemKind::other) {
            return;
        }
        ResourceValues values;
        if (const int unreadable = lookAt(folder, item.name, values); unreadable != 0) {
            onError(posixError(unreadable));
        } else if (values.isRegularFile) {
            visitor(values);
        } else if (values.isDirectory && item.kind == ItemKind::unknown) {
            addSubfolder(item.name);
        }
    });
    if (failure != 0) {
        onError(posixError(failure));
    }
}

// Walks one subtree with three descriptors, whatever its depth: down by name, up by "..". It takes over from the
// parallel walk where that would hold too many folders open.
class ThriftyWalk {
public:
    ThriftyWalk(Descriptor top, const FileVisitor& visitor, const ErrorHandler& onError)
        : top_(std::move(top)), visitor_(visitor), onError_(onError) {}

    void run() {
        levels_.push_back(Level{{}, identityOf(top_.get()), subfoldersOf(top_.get())});
        while (!levels_.empty()) {
            if (levels_.back().waiting.empty()) {
                goUp();
            } else {
                const std::string name = std::move(levels_.back().waiting.back());
                levels_.back().waiting.pop_back();
                goDown(name);
            }
        }
    }

private:
    using Identity = std::pair<dev_t, ino_t>;

    struct Level {
        std::string name;
        Identity identity;
        std::vector<std::string> waiting;
    };

    static Identity identityOf(int folder) {
        struct stat found {};
        return fstat(folder, &found) == 0 ? Identity(found.st_dev, found.st_ino) : Identity();
    }

    std::vector<std::string> subfoldersOf(int folder) {
        std::vector<std::string> names;
        readFolder(folder, visitor_, onError_, [&](const char* name) { names.emplace_back(name); });
        return names;
    }

    // The open folder of the deepest level: the top itself is kept apart, since it is the way back from anywhere.
    int here() const { return levels_.size() == 1 ? top_.get() : current_.get(); }

    void goDown(const std::string& name) {
        Descriptor child = openPatiently([&] { return openChildOnSameDevice(here(), name.c_str()); });
        if (!child) {
            onError_(posixError(errno));
            return;
        }
        std::vector<std::string> subfolders = subfoldersOf(child.get());
        if (subfolders.empty()) {
            return;
        }
        levels_.push_back(Level{name, identityOf(child.get()), std::move(subfolders)});
        current_ = std::move(child);
    }

    void goUp() {
        levels_.pop_back();
        if (levels_.size() <= 1) {
            current_.close();
            return;
        }
        Descriptor parent = openPatiently([&] { return openFolder(current_.get(), "..", LastLink::refuse); });
        if (!parent || identityOf(parent.get()) != levels_.back().identity) {
            parent = reopenDeepestLevel();
        }
        current_ = std::move(parent);
        if (!current_) {
            // The folder was moved or removed meanwhile: what waited in it is no longer below the top.
            levels_.back().waiting.clear();
        }
    }

    Descriptor reopenDeepestLevel() {
        Descriptor reached;
        for (std::size_t i = 1; i < levels_.size(); ++i) {
            const int from = i == 1 ? top_.get() : reached.get();
            reached = openPatiently([&] { return openChildOnSameDevice(from, levels_[i].name.c_str()); });
            if (!reached || identityOf(reached.get()) != levels_[i].identity) {
                return {};
            }
        }
        return reached;
    }

    Descriptor top_;
    Descriptor current_;
    std::vector<Level> levels_;
    const FileVisitor& visitor_;
    const ErrorHandler& onError_;
};

}  // namespace

bool walkTree(const std::filesystem::path& top, const std::function<FileVisitor()>& makeVisitor,
              const std::function<void(const PlatformError&)>& onError) {
    Descriptor opened = openPatiently([&] { return openFolder(AT_FDCWD, top.c_str(), LastLink::refuse); });
    if (!opened) {
        onError(posixError(errno));
        return false;
    }

    std::mutex makingVisitor;
    tbb::enumerable_thread_specific<FileVisitor> visitors([&] {
        const std::lock_guard lock(makingVisitor);
        return makeVisitor();
    });
    const bool background = inBackground();
    const int mostHeld = heldFoldersLimit();

    const auto walkOpened = [&](Descriptor folder, auto&& addWaiting) {
        const FileVisitor& visitor = visitors.local();
        if (heldFolders.load(std::memory_order_relaxed) >= mostHeld) {
            ThriftyWalk(std::move(folder), visitor, onError).run();
            return;
        }
        const auto held = std::make_shared<const HeldFolder>(std::move(folder));
        readFolder(held->descriptor(), visitor, onError, [&](const char* name) {
            addWaiting(WaitingFolder{held, name});
        });
    };

    std::vector<WaitingFolder> first;
    walkOpened(std::move(opened), [&](WaitingFolder waiting) { first.push_back(std::move(waiting)); });
    const auto walkWaiting = [&](WaitingFolder& waiting, tbb::feeder<WaitingFolder>& feeder) {
        tellTakenOver(&order);
        if (background) {
            enterBackground();
        }
        const int parent = waiting.parent->descriptor();
        Descriptor folder = openPatiently([&] { return openChildOnSameDevice(parent, waiting.name.c_str()); });
        if (!folder) {
            onError(posixError(errno));
            return;
        }
        waiting.parent.reset();
        walkOpened(std::move(folder), [&](WaitingFolder next) {
            tellHandedOver(&order);
            feeder.add(std::move(next));
        });
        tellHandedOver(&order);
    };
    tellHandedOver(&order);
    tbb::parallel_for_each(first.begin(), first.end(), walkWaiting);
    tellTakenOver(&order);
    return true;
}

}  // namespace vesk

#include "platform/files/tree_walk.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/threads/background.h"
#include "platform/threads/work_sharing.h"

namespace vesk {

namespace {

// Descriptors that all walks of this process hold open for folders whose subfolders wait.
std::atomic<int> heldFolders = 0;

// How many of them there may be now. Each thread in a walk needs three more, the rest of the program some dozens. If
// all threads had to wait for a descriptor at once, none would become free.
int heldFoldersLimit() {
    constexpr rlim_t most = 4096;
    constexpr rlim_t forTheRest = 64;
    constexpr int whenUnknown = 64;
    rlimit allowed{};
    if (getrlimit(RLIMIT_NOFILE, &allowed) != 0) {
        return whenUnknown;
    }
    const rlim_t half = allowed.rlim_cur / 2;
    return static_cast<int>(std::min(half - std::min(half / 2, forTheRest), most));
}

// A folder that stays open until the last of its subfolders has been opened relative to it.
class HeldFolder {
public:
    /// Whether one more may be held; it then counts, and must be made.
    static bool reserve(int limit) {
        const bool isFree = heldFolders.fetch_add(1, std::memory_order_relaxed) < limit;
        if (!isFree) {
            heldFolders.fetch_sub(1, std::memory_order_relaxed);
        }
        return isFree;
    }

    explicit HeldFolder(Descriptor descriptor) : descriptor_(std::move(descriptor)) {}
    HeldFolder(const HeldFolder&) = delete;
    HeldFolder& operator=(const HeldFolder&) = delete;
    ~HeldFolder() { heldFolders.fetch_sub(1, std::memory_order_relaxed); }

    int descriptor() const { return descriptor_.get(); }

private:
    Descriptor descriptor_;
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

// Whom a walk tells what it meets besides files.
struct Handlers {
    const std::function<void(const PlatformError&)>& onError;
    const std::function<void()>& onSpecial;
};

// Looks at one item. A regular file goes to `visitor`; true when it is a folder.
bool lookAndTellFolder(int folder, const ListedItem& item, const FileVisitor& visitor, const Handlers& handlers) {
    ResourceValues values;
    if (const int unreadable = statItem(folder, item, values, WantedDates::lastUse); unreadable != 0) {
        handlers.onError(posixError(unreadable));
    } else if (values.isRegularFile) {
        visitor(values);
    } else if (handlers.onSpecial && !values.isDirectory && !values.isSymbolicLink) {
        handlers.onSpecial();
    }
    return values.isDirectory;
}

// Hands every regular file of an open folder to `visitor`, except those that `leaveFile` takes for another thread, and
// every subfolder's name to `addSubfolder`.
template <typename AddSubfolder, typename LeaveFile>
void readFolder(int folder, const FileVisitor& visitor, const Handlers& handlers, AddSubfolder addSubfolder,
                LeaveFile leaveFile) {
    const int failure = readNames(folder, [&](ListedItem item) {
        switch (item.kind) {
            case ItemKind::folder:
                addSubfolder(item.name);
                break;
            case ItemKind::regularFile:
                // Leaving a file for another thread spares the look at it alone.
                if (item.values != nullptr || !leaveFile(item.name)) {
                    lookAndTellFolder(folder, item, visitor, handlers);
                }
                break;
            case ItemKind::unknown:
                if (lookAndTellFolder(folder, item, visitor, handlers)) {
                    addSubfolder(item.name);
                }
                break;
            case ItemKind::other:
                if (handlers.onSpecial) {
                    lookAndTellFolder(folder, item, visitor, handlers);
                }
                break;
        }
    });
    if (failure != 0) {
        handlers.onError(posixError(failure));
    }
}

// Walks one subtree with three descriptors, whatever its depth: down by name, up by "..". It takes over from the
// parallel walk where that would hold too many folders open.
class ThriftyWalk {
public:
    ThriftyWalk(Descriptor top, const FileVisitor& visitor, const Handlers& handlers)
        : top_(std::move(top)), visitor_(visitor), handlers_(handlers) {}

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
        readFolder(
            folder, visitor_, handlers_, [&](const char* name) { names.emplace_back(name); },
            [](const char* /*name*/) { return false; });
        return names;
    }

    // The open folder of the deepest level: the top itself is kept apart, since it is the way back from anywhere.
    int here() const { return levels_.size() == 1 ? top_.get() : current_.get(); }

    void goDown(const std::string& name) {
        Descriptor child = openPatiently([&] { return openChildOnSameDevice(here(), name.c_str()); });
        if (!child) {
            handlers_.onError(posixError(errno));
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
        Descriptor parent = openPatiently([&] { return openFolder(current_.get(), "..", LastLink::doNotFollow); });
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
    const Handlers& handlers_;
};

// Names in one folder that wait for a thread, one after the other, each ended by a 0. Several together, so that their
// waiting costs less memory and time than their work. The top of a walk, which is open already, has no names.
struct Batch {
    enum class Of { top, files, subfolders };

    Of of;
    std::shared_ptr<const HeldFolder> folder;
    std::string names;
    int count = 0;

    void add(const char* name) {
        constexpr std::size_t usualLength = 320;
        if (count == 0) {
            names.reserve(usualLength);
        }
        names.append(name, std::strlen(name) + 1);
        ++count;
    }

    template <typename Visit>
    void forEach(Visit visit) const {
        for (const char* name = names.data(); name < names.data() + names.size(); name += std::strlen(name) + 1) {
            visit(name);
        }
    }
};

// Walks a tree on all cores. A tree of a few folders is walked by the calling thread alone, which is done before
// others would have woken; the files of a large folder are shared among threads like folders are.
class ParallelWalk {
public:
    ParallelWalk(Descriptor top, const std::function<FileVisitor()>& makeVisitor, const Handlers& handlers)
        : top_(std::move(top)),
          handlers_(handlers),
          work_(makeVisitor, [this](const Batch& batch, Worker& worker) { workOn(batch, worker); }) {}

    void run() { work_.run(Batch{Batch::Of::top, nullptr, {}}); }

private:
    using Work = WorkSharing<Batch, FileVisitor>;
    using Worker = Work::Worker;

    static constexpr int foldersWalkedAlone = 16;
    static constexpr int subfoldersInBatch = 16;
    static constexpr int filesInBatch = 512;
    // A folder's names are read faster than its files are looked at; the reader then looks at some itself.
    static constexpr int mostFileBatches = 32;

    void workOn(const Batch& batch, Worker& worker) {
        if (background_) {
            enterBackground();
        }
        switch (batch.of) {
            case Batch::Of::top:
                enter(std::move(top_), worker);
                break;
            case Batch::Of::files:
                fileBatches_.fetch_sub(1, std::memory_order_relaxed);
                batch.forEach([&](const char* name) {
                    lookAndTellFolder(batch.folder->descriptor(), {name, ItemKind::regularFile}, worker.state,
                                      handlers_);
                });
                break;
            case Batch::Of::subfolders:
                enterChildren(batch, worker);
                break;
        }
    }

    // A thread that has only these left shares them with one that is idle: with the disk to wait for, each is long.
    void enterChildren(const Batch& batch, Worker& worker) {
        const char* name = batch.names.data();
        for (int left = batch.count; left > 0; --left) {
            if (left > 1 && worker.lacksItems()) {
                Batch rest{Batch::Of::subfolders, batch.folder, {}};
                const char* end = name;
                for (int i = 0; i < left; ++i) {
                    if (i >= (left + 1) / 2) {
                        rest.add(end);
                    }
                    end += std::strlen(end) + 1;
                }
                left -= rest.count;
                worker.addForOthers(std::move(rest));
            }
            enterChild(batch.folder->descriptor(), name, worker);
            name += std::strlen(name) + 1;
            worker.offerItems();
        }
    }

    void enterChild(int folder, const char* name, Worker& worker) {
        Descriptor child = openPatiently([&] { return openChildOnSameDevice(folder, name); });
        if (child) {
            enter(std::move(child), worker);
        } else {
            handlers_.onError(posixError(errno));
        }
    }

    void enter(Descriptor opened, Worker& worker) {
        if (!HeldFolder::reserve(heldFoldersLimit_)) {
            ThriftyWalk(std::move(opened), worker.state, handlers_).run();
            return;
        }
        if (!worker.isSharing() && ++foldersEntered_ > foldersWalkedAlone) {
            worker.startSharing();
        }
        const auto folder = std::make_shared<const HeldFolder>(std::move(opened));
        Batch subfolders{Batch::Of::subfolders, folder, {}};
        Batch files{Batch::Of::files, folder, {}};
        int filesMet = 0;
        bool leaving = false;
        const auto leaveFile = [&](const char* name) {
            if (filesMet++ % filesInBatch == 0) {
                worker.offerItems();
                leaving = filesMet > filesInBatch && fileBatches_.load(std::memory_order_relaxed) < mostFileBatches;
            }
            if (leaving) {
                files.add(name);
                if (files.count == filesInBatch) {
                    leave(files, worker);
                }
            }
            return leaving;
        };
        const auto addSubfolder = [&](const char* name) {
            subfolders.add(name);
            if (subfolders.count == subfoldersInBatch) {
                leave(subfolders, worker);
            }
        };
        readFolder(folder->descriptor(), worker.state, handlers_, addSubfolder, leaveFile);
        leave(files, worker);
        leave(subfolders, worker);
    }

    // Puts a batch by for whichever thread is free, and empties it.
    void leave(Batch& batch, Worker& worker) {
        if (batch.count == 0) {
            return;
        }
        if (batch.of == Batch::Of::files) {
            fileBatches_.fetch_add(1, std::memory_order_relaxed);
            worker.startSharing();
        }
        worker.add(Batch{batch.of, batch.folder, std::exchange(batch.names, {}), std::exchange(batch.count, 0)});
    }

    Descriptor top_;
    const Handlers handlers_;
    const bool background_ = inBackground();
    const int heldFoldersLimit_ = heldFoldersLimit();

    int foldersEntered_ = 0;
    std::atomic<int> fileBatches_ = 0;
    Work work_;
};

}  // namespace

bool walkTree(const std::filesystem::path& top, const std::function<FileVisitor()>& makeVisitor,
              const std::function<void(const PlatformError&)>& onError, const std::function<void()>& onSpecial) {
    Descriptor opened = openPatiently([&] { return openFolder(AT_FDCWD, top.c_str(), LastLink::doNotFollow); });
    if (!opened) {
        onError(posixError(errno));
        return false;
    }
    ParallelWalk(std::move(opened), makeVisitor, {onError, onSpecial}).run();
    return true;
}

}  // namespace vesk

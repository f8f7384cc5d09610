// inotify(7).

#include <dirent.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
#include <set>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/system/open_watch.h"

namespace vesk {

namespace {

// Listing the whole of a large item would take longer than its move.
constexpr int mostFolders = 16;

bool isFolderIn(const dirent& item) {
    const std::string_view name = static_cast<const char*>(item.d_name);
    return item.d_type == DT_DIR && name != "." && name != "..";
}

}  // namespace

class OpenWatch::Items {
public:
    explicit Items(std::vector<std::string> items)
        : events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), items_(std::move(items)) {
        std::sort(items_.begin(), items_.end());
        for (const std::string& item : items_) {
            add(item);
        }
        since_ = std::chrono::steady_clock::now();
    }

    std::chrono::steady_clock::time_point since() const { return since_; }

    bool noticed(const std::string& item) {
        readEvents();
        return opened_.erase(item) > 0;
    }

private:
    void add(const std::string& item) {
        if (!watchInside(item, item)) {
            watchFolderOf(item);
            return;
        }
        Descriptor folder = openFolder(AT_FDCWD, item.c_str(), LastLink::doNotFollow);
        DIR* const listing = folder ? fdopendir(folder.get()) : nullptr;
        if (listing == nullptr) {
            return;
        }
        folder.release();
        int folders = 0;
        while (const dirent* const inside =
                   folders < mostFolders ? readdir(listing) : nullptr) {  // NOLINT(concurrency-mt-unsafe)
            if (isFolderIn(*inside)) {
                ++folders;
                watchInside(item + "/" + static_cast<const char*>(inside->d_name), item);
            }
        }
        closedir(listing);
    }

    // Returns whether there is such a folder, and it can be watched.
    bool watchInside(const std::string& folder, const std::string& item) {
        const int number = watch(folder, IN_DONT_FOLLOW);
        if (number >= 0) {
            insideItems_.insert_or_assign(number, item);
        }
        return number >= 0;
    }

    // One watch serves all items that are files of one folder: its events tell their names.
    void watchFolderOf(const std::string& item) {
        std::string folder = item.substr(0, item.rfind('/'));
        if (folder == lastFolder_) {
            return;
        }
        lastFolder_ = folder;
        if (const int number = watch(folder, 0); number >= 0) {
            foldersOfItems_.emplace(number, std::move(folder));
        }
    }

    int watch(const std::string& folder, std::uint32_t flags) {
        return events_ ? inotify_add_watch(events_.get(), folder.c_str(), IN_OPEN | IN_ONLYDIR | flags) : -1;
    }

    void readEvents() {
        alignas(inotify_event) std::array<char, 16'384> bytes;
        for (;;) {
            const ssize_t length = events_ ? read(events_.get(), bytes.data(), bytes.size()) : 0;
            if (length <= 0) {
                return;
            }
            for (std::size_t at = 0; at < static_cast<std::size_t>(length);) {
                inotify_event event{};
                std::memcpy(&event, bytes.data() + at, sizeof event);
                const char* const name = bytes.data() + at + sizeof event;
                at += sizeof event + event.len;
                if ((event.mask & IN_Q_OVERFLOW) != 0) {
                    opened_.insert(items_.begin(), items_.end());
                } else if ((event.mask & IN_OPEN) != 0 && (event.mask & IN_ISDIR) == 0 && event.len > 0) {
                    // Whoever lists a folder, as Vesk does, keeps nothing in it.
                    note(event.wd, name);
                }
            }
        }
    }

    void note(int number, const char* name) {
        if (const auto found = insideItems_.find(number); found != insideItems_.end()) {
            opened_.insert(found->second);
        }
        for (auto [folder, end] = foldersOfItems_.equal_range(number); folder != end; ++folder) {
            std::string file = folder->second + "/" + name;
            if (std::binary_search(items_.begin(), items_.end(), file)) {
                opened_.insert(std::move(file));
            }
        }
    }

    Descriptor events_;
    std::vector<std::string> items_;
    std::chrono::steady_clock::time_point since_;
    // By the numbers of their watches: the item that a folder belongs to, and the folder that items are files of, by
    // each of the paths that lead there.
    std::map<int, std::string> insideItems_;
    std::multimap<int, std::string> foldersOfItems_;
    std::string lastFolder_;
    std::set<std::string> opened_;
};

OpenWatch::OpenWatch() = default;
OpenWatch::~OpenWatch() = default;

void OpenWatch::prepare(std::vector<std::string> items) {
    // Closing a thousand watches takes more than ten milliseconds while others are added.
    auto watch = [items, former = std::move(former_)]() mutable {
        former.reset();
        return std::make_unique<Items>(std::move(items));
    };
    try {
        prepared_ = std::async(std::launch::async, std::move(watch));
    } catch (const std::system_error&) {
        // No thread could start.
        prepared_ =
            std::async(std::launch::deferred, [items = std::move(items)] { return std::make_unique<Items>(items); });
    }
}

std::chrono::steady_clock::time_point OpenWatch::begin() {
    former_ = std::move(items_);
    items_ = prepared_.valid() ? prepared_.get() : nullptr;
    return items_ ? items_->since() : std::chrono::steady_clock::now();
}

bool OpenWatch::noticed(const std::filesystem::path& item) {
    return items_ && items_->noticed(item.native());
}

}  // namespace vesk

// inotify(7).

#include <dirent.h>
#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>
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
    explicit Items(const std::vector<std::string>& items) : events_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
        for (const std::string& item : items) {
            add(item);
        }
    }

    bool noticed(const std::string& item) {
        readEvents();
        return opened_.erase(item) > 0;
    }

private:
    void add(const std::string& item) {
        Descriptor folder =
            watch(item, item) ? openFolder(AT_FDCWD, item.c_str(), LastLink::doNotFollow) : Descriptor();
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
                watch(item + "/" + static_cast<const char*>(inside->d_name), item);
            }
        }
        closedir(listing);
    }

    bool watch(const std::string& part, const std::string& item) {
        const int number = events_ ? inotify_add_watch(events_.get(), part.c_str(), IN_OPEN | IN_DONT_FOLLOW) : -1;
        if (number >= 0) {
            items_.insert_or_assign(number, item);
        }
        return number >= 0;
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
                at += sizeof event + event.len;
                if ((event.mask & IN_Q_OVERFLOW) != 0) {
                    for (const auto& [number, item] : items_) {
                        opened_.insert(item);
                    }
                } else if ((event.mask & IN_OPEN) != 0 && (event.mask & IN_ISDIR) == 0) {
                    // Whoever lists a folder, as Vesk does, keeps nothing in it.
                    if (const auto found = items_.find(event.wd); found != items_.end()) {
                        opened_.insert(found->second);
                    }
                }
            }
        }
    }

    Descriptor events_;
    std::map<int, std::string> items_;
    std::set<std::string> opened_;
};

OpenWatch::OpenWatch() = default;
OpenWatch::~OpenWatch() = default;

void OpenWatch::prepare(std::vector<std::string> items) {
    // Closing a thousand watches takes more than ten milliseconds while others are added.
    auto watch = [items, former = std::move(former_)]() mutable {
        former.reset();
        return std::make_unique<Items>(items);
    };
    try {
        prepared_ = std::async(std::launch::async, std::move(watch));
    } catch (const std::system_error&) {
        // No thread could start.
        prepared_ =
            std::async(std::launch::deferred, [items = std::move(items)] { return std::make_unique<Items>(items); });
    }
}

void OpenWatch::begin() {
    former_ = std::move(items_);
    items_ = prepared_.valid() ? prepared_.get() : nullptr;
}

bool OpenWatch::noticed(const std::filesystem::path& item) {
    return items_ && items_->noticed(item.native());
}

}  // namespace vesk

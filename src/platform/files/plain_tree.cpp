#include "platform/files/plain_tree.h"

#include <fcntl.h>

#include <atomic>
#include <cerrno>

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/files/files.h"
#include "platform/threads/background.h"
#include "platform/threads/work_sharing.h"

namespace vesk {

namespace {

class PlainTreeWalk {
public:
    TreeContent run(const std::filesystem::path& top) {
        struct Nothing {};
        WorkSharing<std::filesystem::path, Nothing> work([] { return Nothing{}; },
                                                         [this](const std::filesystem::path& folder, auto& worker) {
                                                             if (background_) {
                                                                 enterBackground();
                                                             }
                                                             look(folder, worker);
                                                         });
        work.run(top);
        if (special_.load()) {
            return TreeContent::special;
        }
        return refused_.load() ? TreeContent::refused : TreeContent::plain;
    }

private:
    template <typename Worker>
    void look(const std::filesystem::path& folder, Worker& worker) {
        if (special_.load(std::memory_order_relaxed)) {
            return;
        }
        if (isMountPoint(folder)) {
            special_ = true;
            return;
        }
        const Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::doNotFollow);
        if (!opened) {
            refused_ = refused_ || (errno != ENOENT && errno != ENOTDIR && errno != ELOOP);
            return;
        }
        const int failure = readNames(opened.get(), [&](const ListedItem& item) {
            if (item.kind == ItemKind::folder) {
                worker.add(folder / item.name);
            } else if (item.kind != ItemKind::regularFile) {
                lookAtOdd(opened.get(), item, folder, worker);
            }
        });
        refused_ = refused_ || failure != 0;
        worker.startSharing();
    }

    template <typename Worker>
    void lookAtOdd(int folder, const ListedItem& item, const std::filesystem::path& path, Worker& worker) {
        ResourceValues values;
        if (statItem(folder, item, values) != 0) {
            return;
        }
        if (values.isDirectory) {
            worker.add(path / item.name);
        } else if (!values.isRegularFile && !values.isSymbolicLink) {
            special_ = true;
        }
    }

    const bool background_ = inBackground();
    std::atomic<bool> special_ = false;
    std::atomic<bool> refused_ = false;
};

}  // namespace

TreeContent contentOfTree(const std::filesystem::path& folder) {
    return PlainTreeWalk().run(folder);
}

}  // namespace vesk

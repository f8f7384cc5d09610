#include "platform/system/open_files.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <string_view>

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/files/files.h"
#include "platform/system/open_files_system.h"
#include "platform/threads/work_sharing.h"

namespace vesk {

namespace {

// Linux appends this to the path of a deleted file.
constexpr std::string_view deletedMark = " (deleted)";

// Whether a folder contains one of these, by the inode numbers in its listings only. Stays on the folder's device.
bool holdsAnyOf(const std::set<std::pair<std::uint64_t, std::uint64_t>>& wanted, std::uint64_t device,
                const std::filesystem::path& top) {
    std::vector<std::filesystem::path> waiting = {top};
    while (!waiting.empty()) {
        const std::filesystem::path folder = std::move(waiting.back());
        waiting.pop_back();
        Descriptor opened = openFolder(AT_FDCWD, folder.c_str(), LastLink::doNotFollow);
        DIR* const listing = opened ? fdopendir(opened.get()) : nullptr;
        if (listing == nullptr) {
            continue;
        }
        opened.release();
        bool found = false;
        while (const dirent* const item = found ? nullptr : readdir(listing)) {  // NOLINT(concurrency-mt-unsafe)
            const std::string_view name = static_cast<const char*>(item->d_name);
            if (name == "." || name == "..") {
                continue;
            }
            found = wanted.contains({device, item->d_ino});
            FilePlace place;
            if (item->d_type == DT_DIR ||
                (item->d_type == DT_UNKNOWN && findPlace((folder / name).c_str(), place) && place.isFolder)) {
                waiting.push_back(folder / name);
            }
        }
        closedir(listing);
        if (found) {
            return true;
        }
    }
    return false;
}

// What is at the files' paths; nothing, with inode 0, if that is not known. On all cores: there may be many.
std::vector<FilePlace> placesOf(const std::vector<UsedFile>& used) {
    constexpr std::size_t batch = 256;
    struct Nothing {};
    std::vector<FilePlace> places(used.size());
    shareBatches<Nothing>(
        used.size(), batch, [] { return Nothing{}; },
        [&](std::size_t first, std::size_t last, Nothing& /*nothing*/) {
            for (std::size_t i = first; i < last; ++i) {
                if (!used[i].path.empty()) {
                    findPlace(used[i].path.c_str(), places[i]);
                }
            }
        });
    return places;
}

}  // namespace

OpenFiles::OpenFiles(std::vector<UsedFile> used) {
    const std::vector<FilePlace> places = placesOf(used);
    for (std::size_t i = 0; i < used.size(); ++i) {
        UsedFile& file = used[i];
        const FilePlace& place = places[i];
        if (place.inode != 0 && place.inode == file.inode && (place.device == file.device || !file.deviceIsCertain)) {
            placed_.push_back({place, std::move(file.path)});
            continue;
        }
        if (file.path.ends_with(deletedMark)) {
            // Its folder still exists, and a program with a deleted file open there is using it.
            placed_.push_back({{}, file.path.substr(0, file.path.size() - deletedMark.size())});
        }
        if (file.inode != 0) {
            unplaced_.emplace(file.device, file.inode);
        }
    }
    std::sort(placed_.begin(), placed_.end(), [](const Placed& a, const Placed& b) { return a.path < b.path; });
}

const OpenFiles::Numbers& OpenFiles::doubtful(std::uint64_t device, std::uint64_t mount) {
    const auto [place, isNew] = doubtful_.try_emplace({device, mount});
    if (isNew) {
        std::copy_if(unplaced_.begin(), unplaced_.end(), std::inserter(place->second, place->second.end()),
                     [&](const auto& number) { return number.first == device; });
        for (const Placed& file : placed_) {
            if (file.place.device == device && file.place.mount != mount) {
                place->second.emplace(device, file.place.inode);
            }
        }
    }
    return place->second;
}

const OpenFiles::Folder& OpenFiles::folderAt(std::string_view path) {
    auto known = folders_.find(path);
    if (known == folders_.end()) {
        const std::string resolved = resolvingLinks(path).value_or(path).string();
        FilePlace place;
        const bool pathsAreEnough =
            findPlace(resolved.c_str(), place) && place.isOneDevice && doubtful(place.device, place.mount).empty();
        known = folders_.emplace(path, Folder{resolved, pathsAreEnough}).first;
    }
    return known->second;
}

bool OpenFiles::use(const std::filesystem::path& item) {
    const std::string_view given = item.native();
    const std::size_t slash = given.rfind('/');
    if (slash == std::string_view::npos) {
        return false;  // no item of a clean
    }
    // Processes' paths contain no links, but the item itself may be one.
    const Folder& folder = folderAt(given.substr(0, std::max(slash, std::size_t{1})));
    std::string path = folder.path;
    path += given.substr(slash);
    const auto from = [&] {
        return std::lower_bound(placed_.begin(), placed_.end(), path,
                                [](const Placed& file, const std::string& start) { return file.path < start; });
    };
    const auto itself = from();
    if (itself != placed_.end() && itself->path == path) {
        return true;
    }
    path += '/';
    const auto inside = from();
    if (inside != placed_.end() && inside->path.starts_with(path)) {
        return true;
    }
    path.pop_back();
    FilePlace place;
    if (folder.pathsAreEnough || !findPlace(path.c_str(), place)) {
        return false;
    }
    const Numbers& numbers = doubtful(place.device, place.mount);
    return !numbers.empty() && (numbers.contains({place.device, place.inode}) ||
                                (place.isFolder && holdsAnyOf(numbers, place.device, path)));
}

std::function<OpenFiles()> lookingAtProcesses() {
    return [locks = std::make_shared<LockList>()] {
        std::vector<UsedFile> used;
        if (!listUsedFiles(used, *locks)) {
            used.clear();
        }
        return OpenFiles(std::move(used));
    };
}

}  // namespace vesk

#include "platform/trash_freedesktop.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>
#include <random>
#include <string_view>
#include <utility>

#include "platform/files_system.h"
#include "platform/folder_reader.h"
#include "platform/syncing.h"
#include "platform/text.h"
#include "platform/trash_info.h"
#include "platform/world.h"

namespace vesk {

namespace {

namespace fs = std::filesystem;

constexpr mode_t ownerOnly = 0700;
constexpr const char* filesName = "files";
constexpr const char* infoName = "info";

// A Trash, open and ready to take items.
struct OpenTrash {
    Descriptor files;
    Descriptor info;
    // Where `files` lies.
    fs::path filesPlace;
    // How the record of the item at hand names its place.
    std::string recordedPlace;
};

bool isOurs(int folder) {
    struct stat found {};
    return fstat(folder, &found) == 0 && found.st_uid == geteuid();
}

// Opens a folder of ours inside another, made when missing. A link in its place is refused: it could lead the item
// anywhere.
int openOwnFolder(int parent, const char* name, Descriptor& folder) {
    if (mkdirat(parent, name, ownerOnly) != 0 && errno != EEXIST) {
        return errno;
    }
    folder = openFolder(parent, name, LastLink::refuse);
    if (!folder) {
        return errno;
    }
    return isOurs(folder.get()) ? 0 : EPERM;
}

int openInside(int trashFolder, const fs::path& place, OpenTrash& trash) {
    if (const int failure = openOwnFolder(trashFolder, infoName, trash.info)) {
        return failure;
    }
    trash.filesPlace = place / filesName;
    return openOwnFolder(trashFolder, filesName, trash.files);
}

fs::path homeTrashPlace() {
    return world().dataHome / "Trash";
}

// The volume that the home Trash serves: the one it lies on, or will lie on once it is made. A link that stands for the
// Trash itself does not count: where it leads to another disk, items are refused rather than put into a third place.
std::optional<VolumeIdentity> homeTrashVolume() {
    fs::path place = homeTrashPlace().parent_path();
    while (place.has_relative_path() && !itemExists(place)) {
        place = place.parent_path();
    }
    return volumeIdentity(place);
}

int openHomeTrash(const HeldItem& item, OpenTrash& trash) {
    const fs::path place = homeTrashPlace();
    if (const int failure = makeFolders(place, ownerOnly)) {
        return failure;
    }
    // A link is followed here alone: whoever keeps the Trash elsewhere on the same volume has set it so.
    const Descriptor folder = openFolder(AT_FDCWD, place.c_str(), LastLink::follow);
    if (!folder) {
        return errno;
    }
    if (!isOurs(folder.get())) {
        return EPERM;
    }
    trash.recordedPlace = item.path.string();
    return openInside(folder.get(), place, trash);
}

// The topmost folder of the volume holding `folder` (a path without links); absent when that lies outside the world in
// force, where a made-up world must leave everything alone.
std::optional<fs::path> topOfVolume(fs::path folder, const VolumeIdentity& volume) {
    const std::optional<fs::path> root = resolvingLinks(world().root);
    while (folder != root && folder.has_relative_path() && volumeIdentity(folder.parent_path()) == volume) {
        folder = folder.parent_path();
    }
    const bool isTop = !folder.has_relative_path() || volumeIdentity(folder.parent_path()) != volume;
    return isTop ? std::optional(folder) : std::nullopt;
}

// The Trash that an administrator made for all users of a volume; it must be a real folder and sticky, or a user could
// take away what another one deleted.
int openSharedTrash(int top, const fs::path& topPlace, const std::string& user, OpenTrash& trash) {
    const Descriptor shared = openFolder(top, ".Trash", LastLink::refuse);
    struct stat found {};
    if (!shared || fstat(shared.get(), &found) != 0) {
        return errno;
    }
    if ((found.st_mode & S_ISVTX) == 0) {
        return EPERM;
    }
    Descriptor folder;
    if (const int failure = openOwnFolder(shared.get(), user.c_str(), folder)) {
        return failure;
    }
    return openInside(folder.get(), topPlace / ".Trash" / user, trash);
}

int openVolumeTrash(const HeldItem& item, const VolumeIdentity& volume, OpenTrash& trash) {
    const std::optional<fs::path> parent = resolvingLinks(item.path.parent_path());
    if (!parent || folderIdentity(*parent) != folderIdentity(item.folder)) {
        return ENOENT;
    }
    const std::optional<fs::path> topPlace = topOfVolume(*parent, volume);
    const Descriptor top = topPlace ? openFolder(AT_FDCWD, topPlace->c_str(), LastLink::refuse) : Descriptor();
    if (!top || volumeIdentity(top.get()) != volume) {
        return EXDEV;
    }
    trash.recordedPlace = (*parent / item.name).lexically_relative(*topPlace).string();

    const std::string user = std::to_string(getuid());
    if (openSharedTrash(top.get(), *topPlace, user, trash) == 0) {
        return 0;
    }
    const std::string ownName = ".Trash-" + user;
    Descriptor folder;
    if (const int failure = openOwnFolder(top.get(), ownName.c_str(), folder)) {
        return failure;
    }
    return openInside(folder.get(), *topPlace / ownName, trash);
}

int openTrashFor(const HeldItem& item, OpenTrash& trash) {
    const std::optional<VolumeIdentity> volume = volumeIdentity(item.folder);
    if (!volume) {
        return errno;
    }
    const int failure =
        volume == homeTrashVolume() ? openHomeTrash(item, trash) : openVolumeTrash(item, *volume, trash);
    if (failure != 0) {
        return failure;
    }
    // The history could not say where the item went.
    return isUtf8(trash.filesPlace.string()) ? 0 : EILSEQ;
}

// The name that an item tries to get in the Trash. Numbers count up from 2 at first; where a name is that common
// (think of a thousand projects that each have a "node_modules"), they are drawn, so that no clean counts for ever.
class NameChoice {
public:
    NameChoice(std::string_view name, int infoFolder) : name_(name) {
        constexpr long usual = 255;
        const long longest = fpathconf(infoFolder, _PC_NAME_MAX);
        room_ = static_cast<std::size_t>(longest > 32 ? std::min(longest, usual) : usual) - trashInfoSuffix.size();
    }

    // The next name to try; absent when it is time to give up.
    std::optional<std::string> next() {
        constexpr unsigned counted = 20;
        constexpr unsigned tries = 100;
        ++tried_;
        if (tried_ > tries) {
            return std::nullopt;
        }
        if (tried_ == 1) {
            return shortened(room_);
        }
        const std::string number = "." + std::to_string(tried_ <= counted ? tried_ : drawnNumber());
        return shortened(room_ - number.size()) + number;
    }

private:
    static unsigned drawnNumber() {
        thread_local std::mt19937 generator{std::random_device()()};
        return std::uniform_int_distribution<unsigned>(1'000, 999'999'999)(generator);
    }

    // The name cut to so many bytes, at the start of a character.
    std::string shortened(std::size_t length) const {
        if (name_.size() <= length) {
            return std::string(name_);
        }
        while (length > 0 && (static_cast<unsigned char>(name_[length]) & 0xC0U) == 0x80U) {
            --length;
        }
        return std::string(name_.substr(0, length));
    }

    std::string_view name_;
    std::size_t room_ = 0;
    unsigned tried_ = 0;
};

std::string infoFileName(std::string_view name) {
    return std::string(name).append(trashInfoSuffix);
}

// Writes a record and sees to it that its content is on disk before the item moves. Its name needs no forcing where the
// file system keeps the order of changes to names: the later rename never outlives a power loss that the name does not.
// EEXIST when the name is taken.
int writeRecord(int infoFolder, bool keepsOrder, const std::string& fileName, std::string_view text) {
    Descriptor file(openat(infoFolder, fileName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file) {
        return errno;
    }
    int failure = writeAll(file.get(), text);
    if (failure == 0 && (fsync(file.get()) != 0 || (!keepsOrder && fsync(infoFolder) != 0))) {
        failure = errno;
    }
    if (failure != 0) {
        unlinkat(infoFolder, fileName.c_str(), 0);
    }
    return failure;
}

// Records the item under this name, then moves it. EEXIST when the name is taken.
int moveUnderName(const HeldItem& item, const OpenTrash& trash, const std::string& name, std::string_view record) {
    const std::string infoFile = infoFileName(name);
    const bool keepsOrder = keepsOrderOfNames(trash.info.get());
    if (const int failure = writeRecord(trash.info.get(), keepsOrder, infoFile, record)) {
        return failure;
    }
    const int failure = moveWithoutOverwriting(item.folder, item.name.c_str(), trash.files.get(), name.c_str());
    if (failure != 0) {
        unlinkat(trash.info.get(), infoFile.c_str(), 0);
    } else if (!keepsOrder) {
        // The new name first: with the old one gone before it is there, a power loss would cost the item both.
        fsync(trash.files.get());
        fsync(item.folder);
    }
    return failure;
}

// The record of an item in a Trash of this kind; empty for any other place.
fs::path recordOf(const fs::path& trashed) {
    const fs::path folder = trashed.parent_path();
    if (folder.filename() != filesName || !trashed.has_filename()) {
        return {};
    }
    return folder.parent_path() / infoName / infoFileName(trashed.filename().string());
}

// The absolute path of the place that a record tells. In a volume's Trash it counts from the folder above the Trash.
fs::path absolutePlace(const fs::path& recorded, const fs::path& trashFolder) {
    if (recorded.is_absolute()) {
        return recorded;
    }
    const fs::path holder = trashFolder.parent_path();
    return (holder.filename() == ".Trash" ? holder.parent_path() : holder) / recorded;
}

bool isSamePlace(const fs::path& first, const fs::path& second) {
    const std::optional<FolderIdentity> parent = folderIdentity(first.parent_path());
    return first == second ||
           (first.filename() == second.filename() && parent && parent == folderIdentity(second.parent_path()));
}

}  // namespace

TrashOutcome moveToFreedesktopTrash(const HeldItem& item) {
    OpenTrash trash;
    if (const int failure = openTrashFor(item, trash)) {
        return {posixError(failure), {}};
    }
    const std::string record = trashInfoText(trash.recordedPlace, now());
    NameChoice names(item.name, trash.info.get());
    while (const std::optional<std::string> name = names.next()) {
        const int failure = moveUnderName(item, trash, *name, record);
        if (failure == 0) {
            return {std::nullopt, trash.filesPlace / *name};
        }
        if (failure != EEXIST) {
            return {posixError(failure), {}};
        }
    }
    return {posixError(EEXIST), {}};
}

void forgetTrashed(const fs::path& trashed) {
    const fs::path record = recordOf(trashed);
    if (!record.empty()) {
        unlink(record.c_str());
    }
}

void forgetLostRecord(const fs::path& trashed, const fs::path& original) {
    const fs::path record = recordOf(trashed);
    if (record.empty()) {
        return;
    }
    const Descriptor file(open(record.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    constexpr std::size_t longest = 16'384;
    std::array<char, longest> text{};
    const ssize_t length = file ? read(file.get(), text.data(), text.size()) : -1;
    const std::optional<std::string> place =
        length > 0 ? placeInTrashInfo({text.data(), static_cast<std::size_t>(length)}) : std::nullopt;
    const fs::path trashFolder = trashed.parent_path().parent_path();
    if (place && isSamePlace(absolutePlace(*place, trashFolder), original)) {
        unlink(record.c_str());
    }
}

}  // namespace vesk

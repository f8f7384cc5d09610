#include "platform/trash/freedesktop_trash.h"

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

#include "platform/files/descriptor.h"
#include "platform/files/directory.h"
#include "platform/files/files.h"
#include "platform/files/identity.h"
#include "platform/files/moving.h"
#include "platform/files/syncing.h"
#include "platform/text.h"
#include "platform/trash/trash_info.h"
#include "platform/trash/trash_record.h"
#include "platform/world.h"

namespace vesk {

namespace {

namespace fs = std::filesystem;

constexpr mode_t ownerOnly = 0700;

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
    folder = openFolder(parent, name, LastLink::doNotFollow);
    if (!folder) {
        return errno;
    }
    return isOurs(folder.get()) ? 0 : EPERM;
}

int openInside(int trashFolder, const fs::path& place, OpenTrash& trash) {
    if (const int failure = openOwnFolder(trashFolder, trashInfoName, trash.info)) {
        return failure;
    }
    trash.filesPlace = place / trashFilesName;
    return openOwnFolder(trashFolder, trashFilesName, trash.files);
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
    const Descriptor shared = openFolder(top, ".Trash", LastLink::doNotFollow);
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
    const Descriptor top = topPlace ? openFolder(AT_FDCWD, topPlace->c_str(), LastLink::doNotFollow) : Descriptor();
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

// One item on its way into a Trash, under a name that may have to change.
class Entering {
public:
    Entering(const HeldItem& item, const OpenTrash& trash)
        : item_(item),
          trash_(trash),
          names_(item.name, trash.info.get()),
          text_(trashInfoText(trash.recordedPlace, now())) {}

    // Records the item, then moves it. Returns 0 or an errno value.
    int move() {
        while (std::optional<std::string> name = names_.next()) {
            name_ = *std::move(name);
            int failure = writeRecord(info(), recordName(name_), text_, record_);
            if (failure == 0) {
                failure = moveWithoutOverwriting(item_.folder, item_.name.c_str(), files(), name_.c_str());
                if (failure == 0) {
                    syncMove();
                    return keepOnRecord();
                }
                removeRecord(info(), recordName(name_), record_);
            }
            if (failure != EEXIST) {
                return failure;
            }
        }
        return EEXIST;
    }

    fs::path place() const { return trash_.filesPlace / name_; }

    std::optional<TrashedIdentity> identity() const {
        const std::optional<LastingIdentity> item = lastingIdentity(files(), name_.c_str());
        if (!item) {
            return std::nullopt;
        }
        return TrashedIdentity{*item, lastingIdentity(record_.get()), contentModificationDate(record_.get())};
    }

private:
    int info() const { return trash_.info.get(); }
    int files() const { return trash_.files.get(); }

    // Where the file system keeps no order of changes to names. The new name first: with the old one gone before it is
    // there, a power loss would cost the item both.
    void syncMove() const {
        if (!keepsOrderOfNames(files())) {
            fsync(files());
            fsync(item_.folder);
        }
    }

    // A program that empties the Trash in this very moment may have found the record before its item came, and removed
    // it. The item gets another one, or goes back to where it was.
    int keepOnRecord() {
        const std::optional<ItemIdentity> item = itemIdentity(files(), name_.c_str());
        int failure = 0;
        constexpr int patience = 10;
        for (int tries = 0; tries < patience && failure == 0; ++tries) {
            const Holder holder = holderOf(info(), recordName(name_), record_);
            if (holder == Holder::thatFile || holder == Holder::unknown) {
                return 0;
            }
            if (!isInTrash(item)) {
                return 0;  // emptied away, after it had come
            }
            failure = recordAnew();
            if (failure == 0 && !isInTrash(item)) {
                removeRecord(info(), recordName(name_), record_);
                return 0;
            }
        }
        const bool isBack = moveWithoutOverwriting(files(), name_.c_str(), item_.folder, item_.name.c_str()) == 0;
        return !isBack ? 0 : failure != 0 ? failure : EBUSY;
    }

    bool isInTrash(const std::optional<ItemIdentity>& item) const {
        return item && itemIdentity(files(), name_.c_str()) == item;
    }

    // Under another name where another item's record has come into its place.
    int recordAnew() {
        int failure = writeRecord(info(), recordName(name_), text_, record_);
        while (failure == EEXIST) {
            const std::optional<std::string> name = names_.next();
            if (!name) {
                break;
            }
            failure = writeRecord(info(), recordName(*name), text_, record_);
            if (failure != 0) {
                continue;
            }
            failure = moveWithoutOverwriting(files(), name_.c_str(), files(), name->c_str());
            if (failure == 0) {
                name_ = *name;
            } else {
                removeRecord(info(), recordName(*name), record_);
            }
        }
        return failure;
    }

    const HeldItem& item_;
    const OpenTrash& trash_;
    NameChoice names_;
    std::string text_;
    std::string name_;
    Descriptor record_;
};

}  // namespace

TrashOutcome moveToFreedesktopTrash(const HeldItem& item) {
    OpenTrash trash;
    if (const int failure = openTrashFor(item, trash)) {
        return {posixError(failure), {}, {}};
    }
    Entering entering(item, trash);
    if (const int failure = entering.move()) {
        return {posixError(failure), {}, {}};
    }
    return {std::nullopt, entering.place(), entering.identity()};
}

}  // namespace vesk

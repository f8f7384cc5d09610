#include "platform/trash/trash_place.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/files/directory.h"
#include "platform/files/files.h"
#include "platform/files/moving.h"
#include "platform/files/syncing.h"
#include "platform/text.h"
#include "platform/trash/trash_record.h"
#include "platform/world.h"

namespace vesk {

namespace {

namespace fs = std::filesystem;

constexpr mode_t trashMode = 0700;

bool isOurs(int folder) {
    struct stat found {};
    return fstat(folder, &found) == 0 && found.st_uid == geteuid();
}

// Opens a folder of ours inside another one, and creates it if it is missing. Does not follow a link: it could lead the
// item anywhere.
int openOwnFolder(int parent, const char* name, Descriptor& folder) {
    if (mkdirat(parent, name, trashMode) != 0 && errno != EEXIST) {
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

// The volume of the home Trash, or of the folder where it will be created. If the Trash itself is a link, its target
// does not count: if that is on another disk, the Trash refuses items rather than put them in a third place.
std::optional<VolumeIdentity> homeTrashVolume() {
    fs::path place = homeTrashPlace().parent_path();
    while (place.has_relative_path() && !itemExists(place)) {
        place = place.parent_path();
    }
    return volumeIdentity(place);
}

int openHomeTrash(OpenTrash& trash) {
    const fs::path place = homeTrashPlace();
    if (const int failure = makeFolders(place, trashMode)) {
        return failure;
    }
    // Only here a link is followed: users may keep the Trash elsewhere on the same volume.
    const Descriptor folder = openFolder(AT_FDCWD, place.c_str(), LastLink::follow);
    if (!folder) {
        return errno;
    }
    if (!isOurs(folder.get())) {
        return EPERM;
    }
    return openInside(folder.get(), place, trash);
}

// The topmost folder of the volume with `folder` (a path without links); absent if that is outside the current world,
// where tests must not change anything.
std::optional<fs::path> topOfVolume(fs::path folder, const VolumeIdentity& volume) {
    const std::optional<fs::path> root = resolvingLinks(world().root);
    while (folder != root && folder.has_relative_path() && volumeIdentity(folder.parent_path()) == volume) {
        folder = folder.parent_path();
    }
    const bool isTop = !folder.has_relative_path() || volumeIdentity(folder.parent_path()) != volume;
    return isTop ? std::optional(folder) : std::nullopt;
}

// The Trash that an administrator created for all users of a volume. It must be a real folder and sticky; otherwise one
// user could take what another has deleted.
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
    if (!parent || folderIdentity(*parent) != folderIdentity(item.folder.get())) {
        return ENOENT;
    }
    const std::optional<fs::path> topPlace = topOfVolume(*parent, volume);
    const Descriptor top = topPlace ? openFolder(AT_FDCWD, topPlace->c_str(), LastLink::doNotFollow) : Descriptor();
    if (!top || volumeIdentity(top.get()) != volume) {
        return EXDEV;
    }
    trash.top = *topPlace;

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

}  // namespace

int openTrashFor(const HeldItem& item, OpenTrash& trash) {
    const std::optional<VolumeIdentity> volume = volumeIdentity(item.folder.get());
    if (!volume) {
        return errno;
    }
    trash.volume = *volume;
    const int failure = volume == homeTrashVolume() ? openHomeTrash(trash) : openVolumeTrash(item, *volume, trash);
    if (failure != 0) {
        return failure;
    }
    trash.keepsOrder = keepsOrderOfNames(trash.files.get());
    // Otherwise the history could not store where the item is.
    return isUtf8(trash.filesPlace.string()) ? 0 : EILSEQ;
}

std::optional<std::string> recordedPlace(const HeldItem& item, const OpenTrash& trash) {
    if (trash.top.empty()) {
        return item.path.string();
    }
    const std::optional<fs::path> parent = resolvingLinks(item.path.parent_path());
    if (!parent || folderIdentity(*parent) != folderIdentity(item.folder.get())) {
        return std::nullopt;
    }
    return (*parent / item.name).lexically_relative(trash.top).string();
}

bool isAtItsPlace(const OpenTrash& trash) {
    const std::optional<ItemIdentity> there = folderIdentity(trash.filesPlace);
    return there && there == folderIdentity(trash.files.get());
}

}  // namespace vesk

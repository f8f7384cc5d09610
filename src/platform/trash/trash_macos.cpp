#include <QFile>
#include <QString>
#include <cerrno>

#include "platform/trash/freedesktop_trash.h"
#include "platform/world.h"

namespace vesk {

// The system's call knows one Trash only, the real one: nothing of a made-up world may end up there.
bool usersTrashKeepsRecords() {
    return !isWorldOfCurrentUser();
}

TrashOutcome moveToUsersTrash(const HeldItem& item) {
    if (usersTrashKeepsRecords()) {
        return moveToFreedesktopTrash(item);
    }
    const std::optional<LastingIdentity> before = lastingIdentity(item.folder.get(), item.name.c_str());
    // -[NSFileManager trashItemAtURL:resultingItemURL:error:] underneath: it moves a link itself, and on to the Trash
    // of the volume that the item lies on. It takes a path, so the folder was looked at just before.
    QString where;
    if (!QFile::moveToTrash(QString::fromStdString(item.path.string()), &where)) {
        return {posixError(EIO), {}, {}};
    }
    // A folder's place comes with a slash at the end.
    while (where.size() > 1 && where.endsWith(QLatin1Char('/'))) {
        where.chop(1);
    }
    TrashOutcome outcome{std::nullopt, where.toStdString(), std::nullopt};
    // The Trash may not be looked into everywhere; it is the item that was asked for, then.
    std::optional<LastingIdentity> moved = lastingIdentity(outcome.place);
    if (!moved) {
        moved = before;
    }
    if (moved) {
        outcome.identity = TrashedIdentity{*moved, std::nullopt, std::nullopt};
    }
    return outcome;
}

}  // namespace vesk

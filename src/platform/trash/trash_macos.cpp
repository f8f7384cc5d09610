#include <QFile>
#include <QString>
#include <cerrno>

#include "platform/trash/freedesktop_trash.h"
#include "platform/world.h"

namespace vesk {

TrashOutcome moveToUsersTrash(const HeldItem& item) {
    // The system's call knows one Trash only, the real one: nothing of a made-up world may end up there.
    if (!isWorldOfCurrentUser()) {
        return moveToFreedesktopTrash(item);
    }
    // -[NSFileManager trashItemAtURL:resultingItemURL:error:] underneath: it moves a link itself, and on to the Trash
    // of the volume that the item lies on. It takes a path, so the folder was looked at just before.
    QString where;
    if (!QFile::moveToTrash(QString::fromStdString(item.path.string()), &where)) {
        return {posixError(EIO), {}};
    }
    // A folder's place comes with a slash at the end.
    while (where.size() > 1 && where.endsWith(QLatin1Char('/'))) {
        where.chop(1);
    }
    return {std::nullopt, where.toStdString()};
}

}  // namespace vesk

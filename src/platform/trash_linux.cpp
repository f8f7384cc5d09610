#include "platform/trash_freedesktop.h"

namespace vesk {

bool usersTrashKeepsRecords() {
    return true;
}

TrashOutcome moveToUsersTrash(const HeldItem& item) {
    return moveToFreedesktopTrash(item);
}

}  // namespace vesk

#include "platform/trash/freedesktop_trash.h"

namespace vesk {

bool usersTrashKeepsRecords() {
    return true;
}

TrashOutcome moveToUsersTrash(const HeldItem& item) {
    return moveToFreedesktopTrash(item);
}

}  // namespace vesk

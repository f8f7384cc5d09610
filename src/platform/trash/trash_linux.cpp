#include "platform/trash/freedesktop_trash.h"

namespace vesk {

TrashOutcome moveToUsersTrash(const HeldItem& item) {
    return moveToFreedesktopTrash(item);
}

}  // namespace vesk

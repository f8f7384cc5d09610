#include "platform/trash/trash_freedesktop.h"

namespace vesk {

TrashOutcome moveToUsersTrash(const HeldItem& item) {
    return moveToFreedesktopTrash(item);
}

}  // namespace vesk

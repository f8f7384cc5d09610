#include "platform/files/syncing.h"

#include <sys/stat.h>

namespace vesk {

bool NameOrder::isKept(int folder) {
    struct stat found {};
    if (fstat(folder, &found) != 0) {
        return false;
    }
    const auto [known, isNew] = known_.try_emplace(static_cast<std::uint64_t>(found.st_dev));
    if (isNew) {
        known->second = keepsOrderOfNames(folder);
    }
    return known->second;
}

}  // namespace vesk

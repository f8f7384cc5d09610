#include "platform/trash.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "platform/folder_reader.h"
#include "platform/world.h"

namespace vesk {

TrashOutcome moveToTrash(const SeenItem& item) {
    const auto refused = [](int number) { return TrashOutcome{posixError(number), {}}; };
    const Descriptor folder = openFolder(AT_FDCWD, item.path.parent_path().c_str(), LastLink::follow);
    if (!folder || !item.folder || folderIdentity(folder.get()) != item.folder) {
        return refused(ENOENT);
    }
    const std::filesystem::path files = world().dataHome / "Trash/files";
    if (const int failure = makeFolders(files, 0700)) {
        return refused(failure);
    }
    const Descriptor trash = openFolder(AT_FDCWD, files.c_str(), LastLink::refuse);
    const std::string name = item.path.filename().string();
    for (int number = 1; number < 100; ++number) {
        const std::string newName = number == 1 ? name : name + "." + std::to_string(number);
        const int failure = moveWithoutOverwriting(folder.get(), name.c_str(), trash.get(), newName.c_str());
        if (failure != EEXIST) {
            return failure == 0 ? TrashOutcome{std::nullopt, files / newName} : refused(failure);
        }
    }
    return refused(EEXIST);
}

std::optional<PlatformError> putBack(const std::filesystem::path& trashed, const std::filesystem::path& original) {
    if (const int failure = makeFolders(original.parent_path(), 0777)) {
        return posixError(failure);
    }
    const int failure = moveWithoutOverwriting(AT_FDCWD, trashed.c_str(), AT_FDCWD, original.c_str());
    return failure == 0 ? std::nullopt : std::optional(posixError(failure));
}

}  // namespace vesk

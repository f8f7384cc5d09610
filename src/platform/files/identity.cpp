#include "platform/files/identity.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/files/identity_system.h"

namespace vesk {

namespace {

std::optional<ItemIdentity> folderOf(int folder, const char* name) {
    return folder == AT_FDCWD ? folderIdentity(std::filesystem::path(name).parent_path()) : folderIdentity(folder);
}

LastingIdentity lasting(const ItemIdentity& found, bool keepsInodeNumber) {
    return {found.type, keepsInodeNumber ? std::optional(found.inode) : std::nullopt, found.made};
}

template <typename Value>
bool differ(const std::optional<Value>& first, const std::optional<Value>& second) {
    return first && second && *first != *second;
}

bool lookAlike(const struct stat& first, const struct stat& second) {
    return isSameFile(first, second) && first.st_uid == second.st_uid && first.st_nlink == second.st_nlink &&
           first.st_size == second.st_size;
}

}  // namespace

bool isSameFile(const struct stat& first, const struct stat& second) {
    return first.st_dev == second.st_dev && first.st_ino == second.st_ino && first.st_mode == second.st_mode;
}

std::optional<ItemIdentity> itemIdentity(const std::filesystem::path& item) {
    return itemIdentity(AT_FDCWD, item.c_str());
}

std::optional<LastingIdentity> lastingIdentity(int folder, const char* name) {
    const std::optional<ItemIdentity> found = itemIdentity(folder, name);
    if (!found) {
        return std::nullopt;
    }
    return lasting(*found, folder == AT_FDCWD ? keepsInodeNumbers(std::filesystem::path(name).parent_path())
                                              : keepsInodeNumbers(folder));
}

std::optional<LastingIdentity> lastingIdentity(int opened) {
    const std::optional<ItemIdentity> found = itemIdentity(opened);
    return found ? std::optional(lasting(*found, keepsInodeNumbers(opened))) : std::nullopt;
}

std::optional<LastingIdentity> lastingIdentity(const std::filesystem::path& item) {
    return lastingIdentity(AT_FDCWD, item.c_str());
}

bool mayBeSame(const LastingIdentity& first, const LastingIdentity& second) {
    return first.type == second.type && !differ(first.inode, second.inode) && !differ(first.made, second.made);
}

bool areSurelySame(const LastingIdentity& first, const LastingIdentity& second) {
    return first.inode && first.made && first == second;
}

bool areTwoNamesOfOneFile(int folder, const char* name, int otherFolder, const char* otherName) {
    struct stat first {};
    struct stat second {};
    if (fstatat(folder, name, &first, AT_SYMLINK_NOFOLLOW) != 0 ||
        fstatat(otherFolder, otherName, &second, AT_SYMLINK_NOFOLLOW) != 0 || S_ISDIR(first.st_mode)) {
        return false;
    }
    const auto dates = datesOfChange(folder, name);
    const std::optional<ItemIdentity> firstFolder = folderOf(folder, name);
    const std::optional<ItemIdentity> secondFolder = folderOf(otherFolder, otherName);
    return first.st_nlink > 1 && lookAlike(first, second) && dates && dates == datesOfChange(otherFolder, otherName) &&
           firstFolder && secondFolder && firstFolder != secondFolder &&
           generationOf(folder, name) == generationOf(otherFolder, otherName);
}

}  // namespace vesk

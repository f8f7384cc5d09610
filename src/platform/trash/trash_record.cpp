#include "platform/trash/trash_record.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <utility>

#include "platform/files/content.h"
#include "platform/files/descriptor.h"
#include "platform/files/identity.h"
#include "platform/files/syncing.h"
#include "platform/trash/trash_info.h"

namespace vesk {

namespace {

namespace fs = std::filesystem;

// Where the record of an item in a Trash of this kind lies; empty for any other place.
fs::path recordPlace(const fs::path& trashed) {
    const fs::path folder = trashed.parent_path();
    if (folder.filename() != trashFilesName || !trashed.has_filename()) {
        return {};
    }
    return folder.parent_path() / trashInfoName / recordName(trashed.filename().string());
}

// The absolute path of the place that a record tells. In a volume's Trash it counts from the folder above the Trash.
fs::path absolutePlace(const fs::path& recorded, const fs::path& trashFolder) {
    if (recorded.is_absolute()) {
        return recorded;
    }
    const fs::path holder = trashFolder.parent_path();
    return (holder.filename() == ".Trash" ? holder.parent_path() : holder) / recorded;
}

// Paths may lead to one place by different ways. Folders that are missing are compared by their names.
bool isSamePlace(fs::path first, fs::path second) {
    if (first == second) {
        return true;
    }
    while (first.has_relative_path() && first.filename() == second.filename()) {
        first = first.parent_path();
        second = second.parent_path();
        const std::optional<ItemIdentity> folder = folderIdentity(first);
        const std::optional<ItemIdentity> other = folderIdentity(second);
        if (folder || other) {
            return folder == other;
        }
    }
    return false;
}

// Whether an open record is the very one that was written for the item, unchanged; absent when that was not noted.
std::optional<bool> isNoted(const Descriptor& record, const TrashedItem& item) {
    if (!item.identity || !item.identity->record || !item.identity->record->inode || !item.identity->recorded) {
        return std::nullopt;
    }
    const std::optional<LastingIdentity> found = lastingIdentity(record.get());
    return found && found->inode && mayBeSame(*item.identity->record, *found) &&
           contentModificationDate(record.get()) == item.identity->recorded;
}

// Whether an open record says that the item came from its place, and no later than its run. The date of the very one
// that was written need not be asked: it is local time, and the zone may have been another one then.
bool agrees(const Descriptor& record, const TrashedItem& item) {
    constexpr std::size_t longest = 16'384;
    std::string text;
    if (const int failure = readAll(record.get(), longest, text); failure != 0 && failure != EFBIG) {
        return false;
    }
    const std::optional<std::string> place = placeInTrashInfo(text);
    const std::optional<Date> deleted = deletionInTrashInfo(text);
    return place && deleted && (*deleted <= item.cleaned || isNoted(record, item).value_or(false)) &&
           isSamePlace(absolutePlace(*place, item.place.parent_path().parent_path()), item.original);
}

}  // namespace

std::string recordName(std::string_view item) {
    return std::string(item).append(trashInfoSuffix);
}

int writeRecord(int infoFolder, const std::string& name, std::string_view text, Descriptor& record) {
    Descriptor file(openat(infoFolder, name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file) {
        return errno;
    }
    const int failure = writeAll(file.get(), text);
    if (failure != 0) {
        removeRecord(infoFolder, name, file);
        return failure;
    }
    record = std::move(file);
    return 0;
}

int syncRecord(int infoFolder, bool keepsOrder, const Descriptor& record) {
    return fsync(record.get()) != 0 || (!keepsOrder && fsync(infoFolder) != 0) ? errno : 0;
}

Holder holderOf(int folder, const std::string& name, const Descriptor& file) {
    const std::optional<ItemIdentity> found = itemIdentity(folder, name.c_str());
    if (!found) {
        return errno == ENOENT ? Holder::nothing : Holder::unknown;
    }
    const std::optional<ItemIdentity> known = itemIdentity(file.get());
    return !known ? Holder::unknown : found == known ? Holder::thatFile : Holder::another;
}

void removeRecord(int infoFolder, const std::string& name, const Descriptor& record) {
    if (holderOf(infoFolder, name, record) == Holder::thatFile) {
        unlinkat(infoFolder, name.c_str(), 0);
    }
}

OpenRecord recordOf(const TrashedItem& item) {
    const fs::path place = recordPlace(item.place);
    if (place.empty()) {
        return {};
    }
    OpenRecord record{place, Descriptor(open(place.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC))};
    return record.file && agrees(record.file, item) ? std::move(record) : OpenRecord();
}

void forget(const OpenRecord& record) {
    if (!record.path.empty()) {
        removeRecord(AT_FDCWD, record.path.string(), record.file);
    }
}

void forgetLostRecord(const TrashedItem& item) {
    const OpenRecord record = recordOf(item);
    if (record.file && isNoted(record.file, item).value_or(true)) {
        forget(record);
    }
}

}  // namespace vesk

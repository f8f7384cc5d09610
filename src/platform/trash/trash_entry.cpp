#include "platform/trash/trash_entry.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <random>
#include <utility>

#include "platform/files/identity.h"
#include "platform/files/moving.h"
#include "platform/trash/trash_info.h"

namespace vesk {

// The name that an item tries to get in the Trash. Numbers count up from 2 at first; where a name is that common
// (think of a thousand projects that each have a "node_modules"), they are drawn, so that no clean counts for ever.
class TrashEntry::NameChoice {
public:
    NameChoice(std::string name, int infoFolder) : name_(std::move(name)) {
        constexpr long usual = 255;
        const long longest = fpathconf(infoFolder, _PC_NAME_MAX);
        room_ = static_cast<std::size_t>(longest > 32 ? std::min(longest, usual) : usual) - trashInfoSuffix.size();
    }

    // The next name to try; absent when it is time to give up.
    std::optional<std::string> next() {
        constexpr unsigned counted = 20;
        constexpr unsigned tries = 100;
        ++tried_;
        if (tried_ > tries) {
            return std::nullopt;
        }
        if (tried_ == 1) {
            return shortened(room_);
        }
        const std::string number = "." + std::to_string(tried_ <= counted ? tried_ : drawnNumber());
        return shortened(room_ - number.size()) + number;
    }

private:
    static unsigned drawnNumber() {
        thread_local std::mt19937 generator{std::random_device()()};
        return std::uniform_int_distribution<unsigned>(1'000, 999'999'999)(generator);
    }

    // The name cut to so many bytes, at the start of a character.
    std::string shortened(std::size_t length) const {
        if (name_.size() <= length) {
            return name_;
        }
        while (length > 0 && (static_cast<unsigned char>(name_[length]) & 0xC0U) == 0x80U) {
            --length;
        }
        return name_.substr(0, length);
    }

    std::string name_;
    std::size_t room_ = 0;
    unsigned tried_ = 0;
};

TrashEntry::TrashEntry(std::string name, const std::string& recordedPlace, std::shared_ptr<const OpenTrash> trash,
                       RecordNotes* notes)
    : trash_(std::move(trash)),
      notes_(notes),
      names_(std::make_unique<NameChoice>(std::move(name), info())),
      text_(trashInfoText(recordedPlace, now())) {
}

TrashEntry::~TrashEntry() = default;
TrashEntry::TrashEntry(TrashEntry&&) noexcept = default;
TrashEntry& TrashEntry::operator=(TrashEntry&&) noexcept = default;

int TrashEntry::write(const std::string& name, RecordSync sync) {
    if (notes_ != nullptr) {
        notes_->add(trash_->filesPlace.parent_path() / trashInfoName / recordName(name), text_);
    }
    int failure = writeRecord(info(), recordName(name), text_, record_);
    if (failure == 0 && sync == RecordSync::now) {
        failure = syncRecord(info(), trash_->keepsOrder, record_);
        if (failure != 0) {
            removeRecord(info(), recordName(name), record_);
        }
    }
    return failure;
}

int TrashEntry::record(RecordSync sync) {
    while (std::optional<std::string> name = names_->next()) {
        name_ = *std::move(name);
        const int failure = write(name_, sync);
        if (failure != EEXIST) {
            return failure;
        }
    }
    return EEXIST;
}

void TrashEntry::takeBack() {
    if (record_) {
        removeRecord(info(), recordName(name_), record_);
        record_ = Descriptor();
    }
}

int TrashEntry::move(const HeldItem& held) {
    for (;;) {
        int failure = moveWithoutOverwriting(held.folder.get(), held.name.c_str(), files(), name_.c_str());
        if (failure == 0) {
            syncMove(held);
            return keepOnRecord(held);
        }
        takeBack();
        if (failure == EEXIST) {
            failure = record(RecordSync::now);
        }
        if (failure != 0) {
            return failure;
        }
    }
}

std::optional<TrashedIdentity> TrashEntry::identity() const {
    const std::optional<LastingIdentity> item = lastingIdentity(files(), name_.c_str());
    if (!item) {
        return std::nullopt;
    }
    return TrashedIdentity{*item, lastingIdentity(record_.get()), contentModificationDate(record_.get())};
}

// Where the file system keeps no order of changes to names. The new name first: with the old one gone before it is
// there, a power loss would cost the item both.
void TrashEntry::syncMove(const HeldItem& held) const {
    if (!trash_->keepsOrder) {
        fsync(files());
        fsync(held.folder.get());
    }
}

// A program that empties the Trash in this very moment may have found the record before its item came, and removed
// it. The item gets another one, or goes back to where it was.
int TrashEntry::keepOnRecord(const HeldItem& held) {
    const std::optional<ItemIdentity> item = itemIdentity(files(), name_.c_str());
    int failure = 0;
    constexpr int patience = 10;
    for (int tries = 0; tries < patience && failure == 0; ++tries) {
        const Holder holder = holderOf(info(), recordName(name_), record_);
        if (holder == Holder::thatFile || holder == Holder::unknown) {
            return 0;
        }
        if (!isInTrash(item)) {
            return 0;  // emptied away, after it had come
        }
        failure = recordAnew();
        if (failure == 0 && !isInTrash(item)) {
            removeRecord(info(), recordName(name_), record_);
            return 0;
        }
    }
    const bool isBack = moveWithoutOverwriting(files(), name_.c_str(), held.folder.get(), held.name.c_str()) == 0;
    return !isBack ? 0 : failure != 0 ? failure : EBUSY;
}

bool TrashEntry::isInTrash(const std::optional<ItemIdentity>& item) const {
    return item && itemIdentity(files(), name_.c_str()) == item;
}

// Under another name where another item's record has come into its place.
int TrashEntry::recordAnew() {
    int failure = write(name_, RecordSync::now);
    if (failure == EEXIST && holderOf(info(), recordName(name_), record_) == Holder::thatFile) {
        return 0;  // it is there after all; the look before had failed
    }
    while (failure == EEXIST) {
        const std::optional<std::string> name = names_->next();
        if (!name) {
            break;
        }
        failure = write(*name, RecordSync::now);
        if (failure != 0) {
            continue;
        }
        failure = moveWithoutOverwriting(files(), name_.c_str(), files(), name->c_str());
        if (failure == 0) {
            name_ = *name;
        } else {
            removeRecord(info(), recordName(*name), record_);
        }
    }
    return failure;
}

}  // namespace vesk

#include <unistd.h>

#include <cerrno>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/files/syncing.h"
#include "platform/trash/freedesktop_trash.h"
#include "platform/trash/held_item.h"
#include "platform/trash/record_notes.h"
#include "platform/trash/trash.h"
#include "platform/trash/trash_entry.h"

namespace vesk {

namespace fs = std::filesystem;

class TrashBatch::Records {
public:
    explicit Records(const fs::path& notes) : notes_(notes) {}
    // Of items that were not moved.
    ~Records() {
        for (Recorded& recorded : recorded_) {
            recorded.entry.takeBack();
        }
    }
    Records(const Records&) = delete;
    Records& operator=(const Records&) = delete;

    void record(const SeenItem* first, const SeenItem* last) {
        for (const SeenItem* item = first; item != last; ++item) {
            const int failure = recordOne(*item);
            if (failure == EMFILE || failure == ENFILE) {
                leaveDescriptors();
                break;
            }
        }
        sync();
    }

    // The outcome of moving an item that is on record; absent when it has to go its way by itself.
    std::optional<TrashOutcome> move(const SeenItem& item, const HeldItem& held) {
        std::optional<TrashEntry> entry = take(item);
        if (!entry) {
            return std::nullopt;
        }
        if (!isAtItsPlace(entry->trash())) {
            entry->takeBack();
            return std::nullopt;
        }
        const int failure = entry->move(held);
        return failure == 0 ? TrashOutcome{std::nullopt, entry->place(), entry->identity()}
                            : TrashOutcome{posixError(failure), {}, {}};
    }

    // Drops the record of an item that stays where it is.
    void drop(const SeenItem& item) {
        if (std::optional<TrashEntry> entry = take(item)) {
            entry->takeBack();
        }
    }

private:
    struct Recorded {
        const SeenItem* item;
        TrashEntry entry;
    };

    // Returns 0 or an errno value. Whatever stands in the way of one is met again when its turn comes, and told then.
    int recordOne(const SeenItem& item) {
        HeldItem held;
        if (const int failure = holdItem(item, held)) {
            return failure;
        }
        if (!itemIdentity(held.folder.get(), held.name.c_str())) {
            return errno;
        }
        const std::shared_ptr<const OpenTrash> trash = trashFor(held);
        const std::optional<std::string> place = trash ? recordedPlace(held, *trash) : std::nullopt;
        if (!place) {
            return ENOTSUP;
        }
        TrashEntry entry(held.name, *place, trash, &notes_);
        const int failure = entry.record(RecordSync::later);
        if (failure == 0) {
            recorded_.push_back({&item, std::move(entry)});
        }
        return failure;
    }

    // Where the system allows no more descriptors: moving needs a few, and so do others.
    void leaveDescriptors() {
        constexpr std::size_t needed = 16;
        for (std::size_t i = 0; i < needed && !recorded_.empty(); ++i) {
            recorded_.back().entry.takeBack();
            recorded_.pop_back();
        }
    }

    // The Trash for an item, where records can wait for one another; null where each has to be by itself.
    std::shared_ptr<const OpenTrash> trashFor(const HeldItem& held) {
        const std::optional<VolumeIdentity> volume = volumeIdentity(held.folder.get());
        if (!volume) {
            return nullptr;
        }
        for (const std::shared_ptr<const OpenTrash>& known : trashes_) {
            if (known->volume == *volume) {
                return known->keepsOrder ? known : nullptr;
            }
        }
        auto trash = std::make_shared<OpenTrash>();
        if (openTrashFor(held, *trash) != 0) {
            return nullptr;
        }
        trashes_.push_back(trash);
        return trash->keepsOrder ? trash : nullptr;
    }

    // Waits until all records are on the disk; takes back those of a Trash of which that is not known.
    void sync() {
        if (recorded_.empty()) {
            return;
        }
        const std::optional<VolumeIdentity> volumeOfNotes = volumeIdentity(notes_.file());
        bool areNotesSynced = notes_.file() < 0;
        for (const std::shared_ptr<const OpenTrash>& trash : trashes_) {
            std::vector<int> files;
            if (!areNotesSynced && volumeOfNotes == trash->volume) {
                files.push_back(notes_.file());
                areNotesSynced = true;
            }
            for (const Recorded& recorded : recorded_) {
                if (&recorded.entry.trash() == trash.get()) {
                    files.push_back(recorded.entry.recordFile());
                }
            }
            if (!syncNewFiles(files)) {
                takeBack(*trash);
            }
        }
        if (!areNotesSynced) {
            fsync(notes_.file());
        }
    }

    void takeBack(const OpenTrash& trash) {
        std::deque<Recorded> others;
        for (Recorded& recorded : recorded_) {
            if (&recorded.entry.trash() == &trash) {
                recorded.entry.takeBack();
            } else {
                others.push_back(std::move(recorded));
            }
        }
        recorded_ = std::move(others);
    }

    // Items come in the order in which they were recorded; one that was left out meanwhile needs no record any more.
    std::optional<TrashEntry> take(const SeenItem& item) {
        while (!recorded_.empty() && std::less<>()(recorded_.front().item, &item)) {
            recorded_.front().entry.takeBack();
            recorded_.pop_front();
        }
        if (recorded_.empty() || recorded_.front().item != &item) {
            return std::nullopt;
        }
        std::optional<TrashEntry> entry(std::move(recorded_.front().entry));
        recorded_.pop_front();
        return entry;
    }

    RecordNotes notes_;
    std::vector<std::shared_ptr<const OpenTrash>> trashes_;
    std::deque<Recorded> recorded_;
};

TrashBatch::TrashBatch(fs::path notes) : notes_(std::move(notes)) {
    if (!notes_.empty()) {
        takeBackNotedRecords(notes_);
    }
}

TrashBatch::~TrashBatch() = default;

void TrashBatch::record(const SeenItem* first, const SeenItem* last) {
    records_.reset();
    if (usersTrashKeepsRecords()) {
        records_ = std::make_unique<Records>(notes_);
        records_->record(first, last);
    }
}

TrashOutcome TrashBatch::move(const SeenItem& item) {
    HeldItem held;
    if (const int failure = holdItem(item, held)) {
        if (records_) {
            records_->drop(item);
        }
        return {posixError(failure), {}, {}};
    }
    std::optional<TrashOutcome> outcome = records_ ? records_->move(item, held) : std::nullopt;
    return outcome ? *std::move(outcome) : moveToUsersTrash(held);
}

TrashOutcome moveToTrash(const SeenItem& item) {
    return TrashBatch().move(item);
}

}  // namespace vesk

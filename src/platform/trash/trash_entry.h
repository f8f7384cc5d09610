// One item on its way into a Trash of the freedesktop.org Trash specification 1.0: recorded there first, then moved.
// Used by trash*.cpp; callable from any thread.
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "platform/files/descriptor.h"
#include "platform/trash/held_item.h"
#include "platform/trash/record_notes.h"
#include "platform/trash/trash_place.h"
#include "platform/trash/trash_record.h"

namespace vesk {

/// When a record is waited for: before the call that makes it returns, or by whoever called.
enum class RecordSync { now, later };

class TrashEntry {
public:
    /// An item of this name, which a record names `recordedPlace`. Each record is noted before it is made; `notes` may
    /// be null.
    TrashEntry(std::string name, const std::string& recordedPlace, std::shared_ptr<const OpenTrash> trash,
               RecordNotes* notes);
    ~TrashEntry();
    TrashEntry(TrashEntry&&) noexcept;
    TrashEntry& operator=(TrashEntry&&) noexcept;

    const OpenTrash& trash() const { return *trash_; }

    /// Puts the item on record under a name that is free. Returns 0 or an errno value.
    int record(RecordSync sync);
    /// The record's open file.
    int recordFile() const { return record_.get(); }
    /// Removes the record again.
    void takeBack();

    /// Moves the item, which is on record, durably. Returns 0 or an errno value; the record is gone again then.
    int move(const HeldItem& held);

    /// Of an item that has been moved.
    std::filesystem::path place() const { return trash_->filesPlace / name_; }
    std::optional<TrashedIdentity> identity() const;

private:
    class NameChoice;

    int info() const { return trash_->info.get(); }
    int files() const { return trash_->files.get(); }
    int write(const std::string& name, RecordSync sync);
    void syncMove(const HeldItem& held) const;
    int keepOnRecord(const HeldItem& held);
    bool isInTrash(const std::optional<ItemIdentity>& item) const;
    int recordAnew();

    std::shared_ptr<const OpenTrash> trash_;
    RecordNotes* notes_;
    std::unique_ptr<NameChoice> names_;
    std::string text_;
    std::string name_;
    Descriptor record_;
};

}  // namespace vesk

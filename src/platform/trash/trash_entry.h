// An item being moved to a Trash of the freedesktop.org Trash specification 1.0: first recorded there, then moved. Used
// by trash*.cpp; callable from any thread.
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

/// Whether a record is synced before the call that creates it returns, or later by the caller.
enum class RecordSync { now, later };

class TrashEntry {
public:
    /// An item with this name, whose record says `recordedPlace`. Each record is noted in `notes`, unless that is null,
    /// before it is created.
    TrashEntry(std::string name, const std::string& recordedPlace, std::shared_ptr<const OpenTrash> trash,
               RecordNotes* notes);
    ~TrashEntry();
    TrashEntry(TrashEntry&&) noexcept;
    TrashEntry& operator=(TrashEntry&&) noexcept;

    const OpenTrash& trash() const { return *trash_; }

    /// Creates the record under a free name. Returns 0 or an errno value.
    int record(RecordSync sync);
    /// The record's open file.
    int recordFile() const { return record_.get(); }
    /// Removes the record.
    void takeBack();

    /// Moves the item durably, unless a program has just opened it (EBUSY); call `record` first. Returns 0, or an errno
    /// value, having removed the record.
    int move(const HeldItem& held);

    /// The item's place in the Trash, once it has been moved.
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

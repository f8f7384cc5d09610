// Notes which records Vesk is about to create in a Trash, so that those whose items were never moved can be removed
// after a crash: nobody else would know that they have no item. A file beside the preferences, which exists only during
// a clean or after one that was killed. Used by trash_batch.cpp; callable from any thread.
#pragma once

#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/files/descriptor.h"

namespace vesk {

class RecordNotes {
public:
    /// Writes to this file, which the first note creates together with its folder. With an empty path, or if that
    /// fails, nothing is noted.
    explicit RecordNotes(std::filesystem::path file) : path_(std::move(file)) {}
    /// Removes the file: by now every record has its item.
    ~RecordNotes();
    RecordNotes(const RecordNotes&) = delete;
    RecordNotes& operator=(const RecordNotes&) = delete;

    /// Notes that a record with this text is about to be created at this place.
    void add(const std::filesystem::path& record, std::string_view text);
    /// The open file, for syncing; -1 if nothing is noted.
    int file() const { return file_.get(); }

private:
    std::filesystem::path path_;
    bool isBegun_ = false;
    Descriptor file_;
};

/// Removes each record that a killed clean noted in this file and whose item is not in the Trash, and then the file. A
/// record is removed only if it still has exactly the noted text, or a beginning of it that nobody is writing.
void takeBackNotedRecords(const std::filesystem::path& file);

}  // namespace vesk

// What Vesk notes of the records that it is about to make in a Trash, so that those whose items never came can be taken
// back after a crash: nobody else would know that they belong to no item. A file beside the preferences, which is there
// only while a clean runs, or after one that was killed. Used by trash_batch.cpp; callable from any thread.
#pragma once

#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/files/descriptor.h"

namespace vesk {

class RecordNotes {
public:
    /// Notes in this file, which the first note makes, and its folder when that is missing. Without a path, or where
    /// that fails, nothing is noted.
    explicit RecordNotes(std::filesystem::path file) : path_(std::move(file)) {}
    /// Removes the file: no record is without its item any more.
    ~RecordNotes();
    RecordNotes(const RecordNotes&) = delete;
    RecordNotes& operator=(const RecordNotes&) = delete;

    /// Notes that a record with this text is about to be made at this place.
    void add(const std::filesystem::path& record, std::string_view text);
    /// The open file, for waiting until it is on the disk; -1 when nothing is noted.
    int file() const { return file_.get(); }

private:
    std::filesystem::path path_;
    bool isBegun_ = false;
    Descriptor file_;
};

/// Removes each record that a clean noted in this file before it was killed and whose item is not in the Trash, and
/// then the file. A record is removed only if it still has the very text that was noted, or a beginning of it that
/// nobody is writing on.
void takeBackNotedRecords(const std::filesystem::path& file);

}  // namespace vesk

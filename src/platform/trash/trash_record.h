// The record that a Trash of the freedesktop.org Trash specification 1.0 keeps of an item, as a file: written, judged
// and removed. Every program that uses the Trash writes and removes such files, so none is removed by its name alone.
// Used by trash*.cpp; callable from any thread.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/files/descriptor.h"
#include "platform/trash/trash.h"

namespace vesk {

/// The two folders in a Trash: of the items, and of their records.
inline constexpr const char* trashFilesName = "files";
inline constexpr const char* trashInfoName = "info";

/// The name of the record of an item that has this name in the Trash.
std::string recordName(std::string_view item);

/// Writes a record and leaves it open. Returns 0 or an errno value; EEXIST when the name is taken.
int writeRecord(int infoFolder, const std::string& name, std::string_view text, Descriptor& record);

/// Waits until a record is on the disk. Its name needs no waiting where the file system keeps the order of changes to
/// names: the item's later rename never outlives a power loss that the name does not. Returns 0 or an errno value.
int syncRecord(int infoFolder, bool keepsOrder, const Descriptor& record);

/// What has a name in an open folder, compared with an open file that was given it.
enum class Holder { thatFile, nothing, another, unknown };
Holder holderOf(int folder, const std::string& name, const Descriptor& file);

/// Removes a record, if it still is that file.
void removeRecord(int infoFolder, const std::string& name, const Descriptor& record);

/// The record of an item in the Trash, open.
struct OpenRecord {
    /// Empty when there is none.
    std::filesystem::path path;
    Descriptor file;
};

/// Opens the record that says of what lies at `item.place` that it came from `item.original`, and no later than the run
/// that moved it. Empty when there is no such record.
OpenRecord recordOf(const TrashedItem& item);

/// Removes the record of an item that has left the Trash.
void forget(const OpenRecord& record);

/// Removes the record of an item that is not in the Trash any more: what an undo leaves behind that was stopped half
/// way. It stays unless it is the very one that was written for the item, or, where that was not noted, agrees.
void forgetLostRecord(const TrashedItem& item);

}  // namespace vesk

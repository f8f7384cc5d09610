// The record files of the freedesktop.org Trash specification 1.0: writing, checking and removing them. Every program
// that uses the Trash writes and removes such files, so none is removed by name alone. Used by trash*.cpp and
// freedesktop_trash.cpp; callable from any thread.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "platform/files/descriptor.h"
#include "platform/trash/trash.h"

namespace vesk {

/// The two folders in a Trash: for the items, and for their records.
inline constexpr const char* trashFilesName = "files";
inline constexpr const char* trashInfoName = "info";

/// The name of the record of an item with this name in the Trash.
std::string recordName(std::string_view item);

/// Writes a record and leaves it open. Returns 0 or an errno value; EEXIST if the name is taken.
int writeRecord(int infoFolder, const std::string& name, std::string_view text, Descriptor& record);

/// Waits until a record is on the disk. Its name needs no waiting if the file system preserves the order of changes to
/// names: the item's later rename cannot survive a power loss that the name does not. Returns 0 or an errno value.
int syncRecord(int infoFolder, bool keepsOrder, const Descriptor& record);

/// What a name in an open folder belongs to, compared with the open file that was created under it.
enum class Holder { thatFile, nothing, another, unknown };
Holder holderOf(int folder, const std::string& name, const Descriptor& file);

/// Removes a record if the name still belongs to that file.
void removeRecord(int infoFolder, const std::string& name, const Descriptor& record);

/// The record of an item in the Trash, open.
struct OpenRecord {
    /// Empty if there is none.
    std::filesystem::path path;
    Descriptor file;
};

/// Opens the record for `item.place` if it says that the item came from `item.original`, no later than the run that
/// moved it. Empty if there is no such record.
OpenRecord recordOf(const TrashedItem& item);

/// Removes the record of an item that has left the Trash.
void forget(const OpenRecord& record);

/// Removes the record that an interrupted undo left of an item no longer in the Trash. Only removes the very record
/// that was written for the item or, if its identity is unknown, one that matches the item.
void forgetLostRecord(const TrashedItem& item);

}  // namespace vesk

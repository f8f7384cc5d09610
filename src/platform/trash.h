// The door to the user's Trash: every item that Vesk takes from its place, and every item that it puts back, goes
// through here. Callable from any thread.
//
// What holds on every system:
// - An item is moved whole by one rename, or not at all: never copied, never deleted, never put over anything.
// - What is moved is the item of that name itself: a link, not what it leads to.
// - Before an item moves, the place it came from is on record in the Trash itself (on macOS by the system's own call),
//   so that nothing is lost whenever the program or the machine stops.
//
// On Linux, and in every made-up world, the Trash is that of the freedesktop.org Trash specification 1.0
// (trash_freedesktop.cpp); the user's own on macOS is reached by the system's call alone (trash_macos.cpp).
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/error.h"
#include "platform/files.h"

namespace vesk {

/// An item as a scan saw it.
struct SeenItem {
    /// Its absolute path.
    std::filesystem::path path;
    /// The folder in which it lay; absent when nobody looked.
    std::optional<FolderIdentity> folder;
};

struct TrashOutcome {
    /// Why the item still is where it was; absent when it is in the Trash.
    std::optional<PlatformError> error;
    /// Absolute path of the item in the Trash; empty when the system did not tell, or the item was not moved.
    std::filesystem::path place;
};

/// Moves an item to the Trash of the volume it lies on. Refused, with nothing touched, when
/// - the path does not lie below the home folder or below "/private/var/folders", or is not valid UTF-8;
/// - the folder it lies in is not the one that was seen, or none was seen;
/// - the Trash cannot take it (another place is never used instead).
TrashOutcome moveToTrash(const SeenItem& item);

/// Moves an item from the Trash back to its place, making the folders above it that are missing. Returns why the item
/// is not back where it was; absent when it is. The Trash keeps its record of it until `forgetReturned`.
std::optional<PlatformError> putBack(const std::filesystem::path& trashed, const std::filesystem::path& original);

/// Whether it was this undo that brought an item back, or perhaps an earlier one that ended before it was through.
enum class Returned { now, perhapsBefore };

/// Removes the Trash's record of an item that is back at its place, and does nothing for any other. To be called after
/// `syncMoves`: a power loss could take back the move and not the record's end, and nobody would know of the item.
void forgetReturned(const std::filesystem::path& trashed, const std::filesystem::path& original, Returned when);

/// Sees to it that what was moved to these places in the Trash, or away from them, is on the disk: once a run, before
/// anything is stored that tells of the moves. Returns false when that is not known.
bool syncMoves(const std::vector<std::filesystem::path>& trashed);

}  // namespace vesk

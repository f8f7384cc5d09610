// The user's Trash: every item that Vesk removes or restores goes through here. Callable from any thread.
//
// On every system:
// - An item is moved whole, or not at all: never copied, never deleted, never over anything.
// - What moves is the item itself: a link, not its target.
// - Before an item moves, the Trash records where it came from (on macOS the system's own call does that), so that
//   nothing is lost whenever the program or the machine stops.
// - Other programs use the Trash too: something in it is taken for Vesk's item only if it is known to be that item.
//
// On Linux, and in every made-up world, the Trash is that of the freedesktop.org Trash specification 1.0
// (freedesktop_trash.cpp); the user's own Trash on macOS is reached only by the system's call (trash_macos.cpp).
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "platform/date.h"
#include "platform/error.h"
#include "platform/files/identity.h"
#include "platform/files/resource_values.h"

namespace vesk {

class NameOrder;

/// An item as a scan saw it.
struct SeenItem {
    /// Its absolute path.
    std::filesystem::path path;
    /// Its folder; absent if it could not be statted.
    std::optional<ItemIdentity> folder = {};
    /// The item's own dates, if it is offered for its age.
    ItemDates dates = {};
    /// Bytes, as the scan measured them.
    std::int64_t size = 0;
};

/// What distinguishes an item in the Trash, and its record, from whatever may take their names later.
struct TrashedIdentity {
    LastingIdentity item;
    /// Absent if the system keeps the record, or it could not be statted.
    std::optional<LastingIdentity> record;
    /// The record's modification date, which changes if somebody rewrites it.
    std::optional<Date> recorded;
    friend bool operator==(const TrashedIdentity&, const TrashedIdentity&) = default;
};

struct TrashOutcome {
    /// Why the item is still where it was; absent if it is in the Trash.
    std::optional<PlatformError> error;
    /// Absolute path of the item in the Trash; empty if the system did not report it, or the item was not moved.
    std::filesystem::path place;
    /// Absent if the item was not moved, or could not be statted.
    std::optional<TrashedIdentity> identity;
};

/// An item that was moved to the Trash.
struct TrashedItem {
    /// Where it is in the Trash, and where it came from; absolute paths.
    std::filesystem::path place;
    std::filesystem::path original;
    /// When the run that moved it ended.
    Date cleaned;
    /// Absent if none was recorded.
    std::optional<TrashedIdentity> identity;
};

/// Moves an item to the Trash of its volume. Fails, with nothing touched, if
/// - the path is not below the home folder or below "/private/var/folders", or is not valid UTF-8;
/// - its folder is not the one that was scanned, or that one is unknown;
/// - one of its dates is later than the one that was seen;
/// - the Trash cannot take it (no other place is used instead).
TrashOutcome moveToTrash(const SeenItem& item);

/// Moves many items to the Trash, one at a time as `moveToTrash` does. Waiting for the disk is what each costs most;
/// here the records of many items are waited for together, before the first of them moves. Used on one thread.
class TrashBatch {
public:
    /// How many items are best put on record at once: each keeps a descriptor until its turn comes.
    static constexpr std::size_t size = 256;

    /// `notes`: a file in which it is noted which records are being made. Those that a clean left there without their
    /// items when it was killed are taken back now. Without it nothing is noted.
    explicit TrashBatch(std::filesystem::path notes = {});
    /// Takes back the records of items that were not moved, as the next `record` does.
    ~TrashBatch();
    TrashBatch(const TrashBatch&) = delete;
    TrashBatch& operator=(const TrashBatch&) = delete;

    /// Puts on record, on the disk when this returns, the items of a list that are going to be moved next, from the
    /// first to before the last; the list stays where it is until then. What stands in the way of one is told when it
    /// is moved.
    void record(const SeenItem* first, const SeenItem* last);

    /// Moves an item; those on record in the order of their list, and each other one by itself.
    TrashOutcome move(const SeenItem& item);

private:
    class Records;

    std::filesystem::path notes_;
    std::unique_ptr<Records> records_;
};

/// Moves an item from the Trash back to its place, creating missing parent folders. The Trash keeps its record until
/// `forgetReturned`. Returns why the item is not back; absent if it is. Among the errno values:
/// - ENOENT: nothing in the Trash has its name any more;
/// - ESTALE: what has its name there is another item, or may be. If the Trash keeps records that Vesk can read, the
///   record must name the original place, and a deletion no later than `cleaned`; otherwise the identity decides alone.
///   A recorded identity must match in either case;
/// - EEXIST: something else is in its place.
std::optional<PlatformError> restoreItem(const TrashedItem& item);
/// The same for many items of one run, which are mostly on one file system: what is known of it is asked for once.
std::optional<PlatformError> restoreItem(const TrashedItem& item, NameOrder& order);

/// Removes the Trash's record of an item that is back at its place, thanks to this undo or an interrupted earlier one;
/// does nothing for any other item. Call it after `syncMoves`: otherwise a power loss could revert the move but not the
/// removal of the record, and nobody would know about the item.
void forgetReturned(const TrashedItem& item);

/// Waits until the moves to or from these paths in the Trash are on the disk. Call it once per run, before storing
/// anything that lists the moves. Returns false if that failed.
bool syncMoves(const std::vector<std::filesystem::path>& trashed);

/// The state of an item that a run moved.
enum class TrashState {
    /// In the Trash; nothing is known to prevent its return.
    ready,
    /// In the Trash; something else is in its place.
    placeTaken,
    /// In the Trash; permission to move it back is denied.
    denied,
    /// In the Trash; some other failure prevents its return, or a stat of it.
    failing,
    /// At its place; only known for an item with a recorded identity.
    back,
    /// No longer in the Trash, or indistinguishable from another item that has its name there.
    gone,
};

/// The outcome `restoreItem` would have now, as far as it can be determined without touching anything.
TrashState stateInTrash(const TrashedItem& item);

}  // namespace vesk

// The door to the user's Trash: every item that Vesk takes from its place, and every item that it puts back, goes
// through here. Callable from any thread.
//
// What holds on every system:
// - An item is moved whole by one rename, or not at all: never copied, never deleted, never put over anything.
// - What is moved is the item of that name itself: a link, not what it leads to.
// - Before an item moves, the place it came from is on record in the Trash itself (on macOS by the system's own call),
//   so that nothing is lost whenever the program or the machine stops.
// - The Trash is everybody's: what has a name in it is taken for an item of Vesk's only when it can be told that it is.
//
// On Linux, and in every made-up world, the Trash is that of the freedesktop.org Trash specification 1.0
// (freedesktop_trash.cpp); the user's own on macOS is reached by the system's call alone (trash_macos.cpp).
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
    /// The folder in which it lay; absent when nobody looked.
    std::optional<ItemIdentity> folder = {};
    /// The item's own dates, where its age is why it goes.
    ItemDates dates = {};
    /// Bytes, as the scan measured them.
    std::int64_t size = 0;
};

/// What tells an item in the Trash, and its record, from whatever may have their names later.
struct TrashedIdentity {
    LastingIdentity item;
    /// Absent where the system keeps the record, or when it could not be looked at.
    std::optional<LastingIdentity> record;
    /// When the record was written; whoever changes it changes this.
    std::optional<Date> recorded;
    friend bool operator==(const TrashedIdentity&, const TrashedIdentity&) = default;
};

struct TrashOutcome {
    /// Why the item still is where it was; absent when it is in the Trash.
    std::optional<PlatformError> error;
    /// Absolute path of the item in the Trash; empty when the system did not tell, or the item was not moved.
    std::filesystem::path place;
    /// Absent when the item was not moved, or could not be looked at.
    std::optional<TrashedIdentity> identity;
};

/// An item that was moved to the Trash.
struct TrashedItem {
    /// Where it was put, and where it came from; absolute paths.
    std::filesystem::path place;
    std::filesystem::path original;
    /// When the run that moved it had ended.
    Date cleaned;
    /// Absent when nothing was noted of it.
    std::optional<TrashedIdentity> identity;
};

/// Moves an item to the Trash of the volume it lies on. Refused, with nothing touched, when
/// - the path does not lie below the home folder or below "/private/var/folders", or is not valid UTF-8;
/// - the folder it lies in is not the one that was seen, or none was seen;
/// - one of its dates is later than the one that was seen;
/// - the Trash cannot take it (another place is never used instead).
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

/// Moves an item from the Trash back to its place, making the folders above it that are missing. The Trash keeps its
/// record of it until `forgetReturned`. Returns why the item is not back where it was; absent when it is. Among the
/// errno values:
/// - ENOENT: nothing has its name in the Trash any more;
/// - ESTALE: what has its name there is another item, or cannot be told from one. Where the Trash keeps a record of
///   each item, the record has to tell the same original place, and a deletion no later than `cleaned`; where the
///   system keeps it, the identity decides alone. An identity that was noted has to be the same in either case;
/// - EEXIST: something else is in its place.
std::optional<PlatformError> restoreItem(const TrashedItem& item);
/// The same for many items of one run, which are mostly on one file system: what is known of it is asked for once.
std::optional<PlatformError> restoreItem(const TrashedItem& item, NameOrder& order);

/// Removes the Trash's record of an item that is back at its place, by this undo or by an earlier one that ended before
/// it was through; does nothing for any other. To be called after `syncMoves`: a power loss could take back the move
/// and not the record's end, and nobody would know of the item.
void forgetReturned(const TrashedItem& item);

/// Sees to it that what was moved to these places in the Trash, or away from them, is on the disk: once a run, before
/// anything is stored that tells of the moves. Returns false when that is not known.
bool syncMoves(const std::vector<std::filesystem::path>& trashed);

/// How an item of a run stands.
enum class TrashState {
    /// In the Trash, and nothing is known to keep it there.
    ready,
    /// In the Trash; something else is in its place.
    placeTaken,
    /// In the Trash, and may not be moved back.
    denied,
    /// In the Trash; some other failure would keep it there, or keeps it from being looked at.
    failing,
    /// At its place; told only of an item of which an identity was noted.
    back,
    /// Not in the Trash any more, or not to be told from another one that has its name there.
    gone,
};

/// What `restoreItem` would meet now, as far as it can be told without touching anything.
TrashState stateInTrash(const TrashedItem& item);

}  // namespace vesk

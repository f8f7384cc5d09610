// Darwin's calls about files, over the folders of this machine. Beliefs, by their sources: getattrlistbulk(2) and xnu's
// vfs_attrlist.c for the records; setiopolicy_np(3) for files that lie in the cloud alone; renameatx_np(2).
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace vesk::darwin {

/// Makes a folder or a file one that lies in the cloud alone ("dataless"). Opening it, or moving it to the Trash, on a
/// thread that refuses to fetch such items fails with EDEADLK; opening it on any other thread fetches it, which
/// `fetched` counts.
void makeDataless(const std::filesystem::path& item);
/// How many items were fetched from the cloud.
int fetched();

/// How getattrlistbulk behaves from now on.
struct BulkBehaviour {
    /// The call fails with this errno value; 0 when it works.
    int failure = 0;
    /// No more records than this in one call, however large the buffer is.
    int mostRecords = 1'000'000;
    /// Items of this name come as a record with an error alone.
    std::string broken;
    /// Whether the record of such an item has a name.
    bool brokenHasName = true;
    /// Whether an attribute comes that nobody asked for.
    bool foreign = false;
};
void setBulkBehaviour(BulkBehaviour behaviour);
/// How many records getattrlistbulk has handed over.
int bulkRecords();

/// The I/O policy of this thread for items in the cloud; 0 is the system's own choice.
int fetchingPolicy();

/// Where moveToTrash of Qt's puts things.
std::filesystem::path trashOfTests();

/// Whether the world of the tests counts as the user's own, so that the system's Trash is used.
void takeWorldForReal(bool real);

void forgetFiles();

}  // namespace vesk::darwin

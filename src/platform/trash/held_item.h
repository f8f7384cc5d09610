// An item about to be moved to the Trash, whose folder is open and known to be the one that was seen. Used by
// trash*.cpp; callable from any thread.
#pragma once

#include <filesystem>
#include <string>

#include "platform/files/descriptor.h"
#include "platform/trash/trash.h"

namespace vesk {

struct HeldItem {
    std::filesystem::path path;
    /// The last part of `path`.
    std::string name;
    Descriptor folder;
};

/// Opens the folder of an item that may be moved. Returns 0, or an errno value:
/// - EPERM: its path does not lie below the home folder or below "/private/var/folders"; EILSEQ: it is not UTF-8;
/// - ESTALE: its folder is not the one that was seen, or none was seen, or the item has changed since.
int holdItem(const SeenItem& item, HeldItem& held);

}  // namespace vesk

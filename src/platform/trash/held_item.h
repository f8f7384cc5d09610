// An item about to be moved to the Trash, whose folder is open and known to be the one that the scan saw. Used by
// trash*.cpp; callable from any thread.
#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "platform/files/descriptor.h"
#include "platform/trash/trash.h"

namespace vesk {

struct HeldItem {
    std::filesystem::path path;
    /// The last part of `path`.
    std::string name;
    Descriptor folder;
    /// Asked right before the move, once the item is on record: true keeps the item in its place (EBUSY). May be empty.
    std::function<bool()> isOpened{};
};

/// Opens the folder of an item that may be moved. Returns 0, or an errno value:
/// - EPERM: its path is not below the home folder or "/private/var/folders"; EILSEQ: its path is not UTF-8;
/// - ESTALE: its folder is not the one that the scan saw, or the scan saw none, or the item has changed since.
int holdItem(const SeenItem& item, HeldItem& held);

}  // namespace vesk

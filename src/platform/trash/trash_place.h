// Finds and opens a Trash of the freedesktop.org Trash specification 1.0: the home Trash in World::dataHome, or the one
// at the top of another volume. Used by trash*.cpp; callable from any thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/files/descriptor.h"
#include "platform/files/identity.h"
#include "platform/trash/held_item.h"

namespace vesk {

/// An open Trash.
struct OpenTrash {
    Descriptor files;
    Descriptor info;
    /// The path of `files`.
    std::filesystem::path filesPlace;
    /// The volume whose items go here.
    VolumeIdentity volume;
    /// The folder that its records' paths are relative to; empty if they are absolute.
    std::filesystem::path top;
    /// Whether its file system preserves the order of renames.
    bool keepsOrder = false;
};

/// Opens the Trash for an item, and creates it if it is missing. Returns 0 or an errno value.
int openTrashFor(const HeldItem& item, OpenTrash& trash);

/// An item's place as a record in this Trash states it; absent if the place has changed meanwhile.
std::optional<std::string> recordedPlace(const HeldItem& item, const OpenTrash& trash);

/// Whether the folder of the Trash's items is still at its path; otherwise nobody would find what is moved into it.
bool isAtItsPlace(const OpenTrash& trash);

}  // namespace vesk

// Where a Trash of the freedesktop.org Trash specification 1.0 lies, opened so that items can be moved into it: the
// home Trash in World::dataHome, or the one at the top of another volume. Used by trash*.cpp; callable from any thread.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "platform/files/descriptor.h"
#include "platform/files/identity.h"
#include "platform/trash/held_item.h"

namespace vesk {

/// A Trash, open and ready to take items.
struct OpenTrash {
    Descriptor files;
    Descriptor info;
    /// Where `files` lies.
    std::filesystem::path filesPlace;
    /// The volume whose items it takes.
    VolumeIdentity volume;
    /// The folder from which its records count; empty where they name absolute places.
    std::filesystem::path top;
    /// Whether its file system keeps the order of changes to names.
    bool keepsOrder = false;
};

/// Opens the Trash for an item, made when missing. Returns 0 or an errno value.
int openTrashFor(const HeldItem& item, OpenTrash& trash);

/// How a record in this Trash names the place of an item; absent when that place has changed meanwhile.
std::optional<std::string> recordedPlace(const HeldItem& item, const OpenTrash& trash);

/// Whether the folder of the Trash's items still has its name: nobody would find what is moved into it otherwise.
bool isAtItsPlace(const OpenTrash& trash);

}  // namespace vesk

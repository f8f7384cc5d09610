// The one walk over a folder tree: parallel, on all cores, and without a trace.
//
// - Every item below the top folder is met once; hidden ones and the insides of packages too.
// - Links met on the way are not followed; folders on another device, or behind a mount point, are not entered.
// - Nothing is written, no access time of a folder changes where the system allows that (its owner asks).
// - A tree of any depth and width is walked with a bounded number of descriptors and without recursion.
// - What cannot be read is passed over and reported to `onError`; the walk goes on.
//
// Called by Probe::measure, from any number of threads at once.
#pragma once

#include <filesystem>
#include <functional>

#include "platform/error.h"
#include "platform/files/resource_values.h"

namespace vesk {

/// Is handed the values of one regular file: its size and the date of its last use. The modification date may be
/// absent where the access date is there.
using FileVisitor = std::function<void(const ResourceValues&)>;

/// Walks the folder at `top`, a path without links.
///
/// `makeVisitor` is called once for each thread that takes part, one call at a time; the visitor that it returns is
/// used by that thread alone and until `walkTree` returns, so visitors need no lock. `onError` may be called from
/// several threads at once.
///
/// Returns false, with the reason reported to `onError`, when `top` cannot be opened as a folder.
bool walkTree(const std::filesystem::path& top, const std::function<FileVisitor()>& makeVisitor,
              const std::function<void(const PlatformError&)>& onError);

}  // namespace vesk

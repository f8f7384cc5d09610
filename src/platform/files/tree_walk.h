// Walks a folder tree, in parallel on all cores, without leaving a trace.
//
// - Visits every item below the top folder once, including hidden items and the contents of packages.
// - Follows no links; enters no folder on another device or behind a mount point.
// - Writes nothing. Does not change folders' access times where the system allows that (on Linux, for the owner).
// - Walks a tree of any depth and width with a bounded number of descriptors and without recursion.
// - Skips what cannot be read, and reports it to `onError`.
//
// Called by Probe, from any number of threads at once.
#pragma once

#include <filesystem>
#include <functional>

#include "platform/error.h"
#include "platform/files/resource_values.h"

namespace vesk {

/// Receives the values of one regular file: its size and the date of its last use. The modification date may be absent
/// if the access date is present.
using FileVisitor = std::function<void(const ResourceValues&)>;

/// Walks the folder at `top`. A link at the end of that path is not followed.
///
/// `makeVisitor` is called once per participating thread, one call at a time. Only that thread calls the visitor it
/// returns, and not after `walkTree` has returned, so visitors need no lock. `onError` may be called from several
/// threads at once; for what is mounted below the folder, with EXDEV. If `onSpecial` is given, it is called in the same
/// way for each item that is neither a file nor a folder nor a link; otherwise such items are not even statted.
///
/// Returns false, with the reason reported to `onError`, if `top` cannot be opened as a folder.
bool walkTree(const std::filesystem::path& top, const std::function<FileVisitor()>& makeVisitor,
              const std::function<void(const PlatformError&)>& onError, const std::function<void()>& onSpecial = {});

}  // namespace vesk

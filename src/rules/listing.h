// How rules list folders.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "core/card.h"
#include "core/probe.h"
#include "platform/files.h"

namespace vesk::rules {

/// The children of a folder in byte order of their names; none when it cannot be listed.
std::vector<FolderItem> childrenOf(const std::filesystem::path& folder, ListingDetail detail);

/// The same; a refusal for lack of permission also sets the probe's `blocked`.
std::vector<FolderItem> childrenOrBlocked(Probe& probe, const std::filesystem::path& folder, ListingDetail detail);

/// What a rule with at most one card returns.
std::vector<Card> listOf(std::optional<Card> card);

}  // namespace vesk::rules

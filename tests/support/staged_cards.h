// Cards for the pictures and the view tests: made up, or found by the real rules in the demo's home with their sizes
// multiplied to those of a real disk. All items are below World::home.
#pragma once

#include <cstdint>
#include <functional>
#include <latch>
#include <memory>
#include <string>
#include <vector>

#include "core/card.h"
#include "core/spec.h"
#include "state/store.h"

namespace vesk {

/// Whether a staged entry has a file, a few bytes long whatever size it claims.
enum class OnDisk { present, missing };
Entry stagedEntry(const std::string& name, std::int64_t size, OnDisk onDisk = OnDisk::present);

/// A card with `entries` entries of decreasing size, about `size` bytes in all; ticked if it is safe.
Card stagedCard(const std::string& id, Bucket bucket, std::int64_t size, std::size_t entries = 3);

/// A card with snapshots.
Card snapshotCard(std::size_t snapshots);

/// A rule that finds these cards.
Spec staged(std::vector<Card> cards);
/// A rule that is denied permission.
Spec denied(const std::string& label);
/// A rule that measures this many bytes and then waits until `released`.
Spec waiting(std::int64_t bytes, std::shared_ptr<std::latch> released);

/// The real rules' cards in the world's home, with each size multiplied.
std::vector<Card> foundCards(std::int64_t factor);

/// A store's sources: these rules, a disk of 500 GB, and a backup tool that always succeeds or always fails.
enum class BackupTool { works, refusesAll };
Store::Sources sourcesOf(std::vector<Spec> rules, BackupTool tool = BackupTool::works);

}  // namespace vesk

// Cards for the pictures and the view tests: made up, or found by the real rules in the demo's home and then counted in
// the gigabytes of a real disk. Everything lies below World::home.
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

/// An entry that claims `size` bytes. Its file is made, a few bytes long, unless it is to be missing.
enum class OnDisk { present, missing };
Entry stagedEntry(const std::string& name, std::int64_t size, OnDisk onDisk = OnDisk::present);

/// A card of `entries` entries of falling size that come to about `size` bytes, ticked when it is safe.
Card stagedCard(const std::string& id, Bucket bucket, std::int64_t size, std::size_t entries = 3);

/// A card of snapshots.
Card snapshotCard(std::size_t snapshots);

/// A rule that finds these cards.
Spec staged(std::vector<Card> cards);
/// A rule that is refused.
Spec refused(const std::string& label);
/// A rule that has measured so many bytes and then waits until `released`.
Spec waiting(std::int64_t bytes, std::shared_ptr<std::latch> released);

/// What the real rules find in the world's home, each size multiplied.
std::vector<Card> foundCards(std::int64_t factor);

/// A store's sources: these rules, a disk of 500 GB, and a backup tool that does as it is told or refuses.
enum class BackupTool { works, refusesAll };
Store::Sources sourcesOf(std::vector<Spec> rules, BackupTool tool = BackupTool::works);

}  // namespace vesk

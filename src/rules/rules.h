// The body of every rule, by family. Each is called on a thread of its own, uses `probe` for all its measuring, and
// returns the cards it found, none with no entry (but for the snapshots). Failures leave no trace but `probe.blocked`.
#pragma once

#include <vector>

#include "core/card.h"
#include "core/probe.h"

namespace vesk::rules {

std::vector<Card> browserClones(Probe& probe);
std::vector<Card> appCaches(Probe& probe);
std::vector<Card> oldCrashReports(Probe& probe);

}  // namespace vesk::rules

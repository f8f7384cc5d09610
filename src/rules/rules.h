// The rules' functions, by family, for rules/catalogue.cpp. Each runs on its own thread, measures only with `probe`,
// and returns the cards it found; each card has entries, except the snapshots'. A failure yields fewer entries; only a
// denied permission is reported, in `probe.blocked`.
#pragma once

#include <vector>

#include "core/card.h"
#include "core/probe.h"

namespace vesk::rules {

// system_caches.cpp
std::vector<Card> browserClones(Probe& probe);
std::vector<Card> appCaches(Probe& probe);
std::vector<Card> oldCrashReports(Probe& probe);

// snapshots.cpp
std::vector<Card> timeMachineSnapshots(Probe& probe);

// apple_developer.cpp
std::vector<Card> phoneAndTabletFiles(Probe& probe);
std::vector<Card> xcodeBuilds(Probe& probe);

// download_caches.cpp
std::vector<Card> dormantModels(Probe& probe);
std::vector<Card> developerDownloads(Probe& probe);

// virtual_machines.cpp
std::vector<Card> virtualMachineDisks(Probe& probe);

// video_caches.cpp
std::vector<Card> videoEditingCaches(Probe& probe);

// old_downloads.cpp
std::vector<Card> oldDownloads(Probe& probe);

}  // namespace vesk::rules

namespace vesk::Scanner {

// idle_projects.cpp
/// One card for each kind of folder that idle coding projects can rebuild, zero to four.
std::vector<Card> projectCards(Probe& probe);

// leftover_folders.cpp
/// The support folders of applications that are no longer installed, as at most one card.
std::vector<Card> orphanCard(Probe& probe);

}  // namespace vesk::Scanner

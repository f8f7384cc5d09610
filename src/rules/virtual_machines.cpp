// Disks of virtual machines and containers: whole folders, never offered with much confidence.

#include "core/scanner.h"
#include "rules/place_search.h"
#include "rules/rule_support.h"
#include "rules/rules.h"

namespace vesk::rules {

namespace {

constexpr FixedLocation disks[] = {
    {"Library/Containers/com.utmapp.UTM/Data/Documents", "UTM virtual machines"},
    {"Library/Containers/com.docker.docker/Data/vms", "Docker disk image"},
    {"Library/Group Containers/group.com.docker", "Docker data"},
};

constexpr CardDescription diskCard = {
    .id = "vms",
    .title = "Virtual machine disks",
    .symbol = "desktopcomputer",
    .bucket = Bucket::smart,
    .confidence = 0.3,
    .risk = 5.0,
    .summary = "Disk images for UTM and Docker.",
    .why =
        "These hold entire virtual computers or containers. Removing them deletes everything stored inside, so only "
        "do this if you're sure they're finished with.",
};

}  // namespace

std::vector<Card> virtualMachineDisks(Probe& probe) {
    return cardOf(diskCard, entriesAt(probe, disks, linuxDisks));
}

}  // namespace vesk::rules

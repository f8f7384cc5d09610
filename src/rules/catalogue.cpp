#include "rules/catalogue.h"

#include "rules/rules.h"

namespace vesk {

std::vector<Spec> Scanner::specs() {
    return {
        {"Browser clones", rules::browserClones},
        {"App caches", rules::appCaches},
        {"Old crash reports", rules::oldCrashReports},
        {"Time Machine snapshots", rules::timeMachineSnapshots},
        {"Phone and tablet files", rules::phoneAndTabletFiles},
        {"Xcode builds", rules::xcodeBuilds},
        {"Dormant AI models", rules::dormantModels},
        {"Developer downloads", rules::developerDownloads},
        {"Idle coding projects", projectCards},
        {"Virtual machine disks", rules::virtualMachineDisks},
        {"Video editing caches", rules::videoEditingCaches},
        {"Leftover app folders", orphanCard},
        {"Old downloads", rules::oldDownloads},
    };
}

}  // namespace vesk

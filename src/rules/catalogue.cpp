#include "rules/catalogue.h"

#include "rules/rules.h"

namespace vesk {

namespace {

std::vector<Card> nothing(Probe& /*probe*/) {
    return {};
}

}  // namespace

std::vector<Spec> Scanner::specs() {
    return {
        {"Browser clones", rules::browserClones},
        {"App caches", rules::appCaches},
        {"Old crash reports", rules::oldCrashReports},
        {"Time Machine snapshots", nothing},
        {"Phone and tablet files", nothing},
        {"Xcode builds", nothing},
        {"Dormant AI models", nothing},
        {"Developer downloads", nothing},
        {"Idle coding projects", nothing},
        {"Virtual machine disks", nothing},
        {"Video editing caches", nothing},
        {"Leftover app folders", nothing},
        {"Old downloads", nothing},
    };
}

}  // namespace vesk

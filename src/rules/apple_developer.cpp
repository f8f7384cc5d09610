// What Apple's developer tools leave: support files for devices, simulated devices, build leftovers and archives.

#include <string>
#include <string_view>

#include "core/scanner.h"
#include "platform/uuid.h"
#include "rules/rule_support.h"
#include "rules/rules.h"

namespace vesk::rules {

namespace {

constexpr FixedLocation deviceSupport[] = {
    {"Library/Developer/Xcode/iOS DeviceSupport", "iPhone & iPad debug support"},
    {"Library/Developer/Xcode/watchOS DeviceSupport", "Apple Watch debug support"},
    {"Library/Developer/Xcode/tvOS DeviceSupport", "Apple TV debug support"},
};

constexpr CardDescription deviceSupportCard = {
    .id = "devsupport",
    .title = "Old iPhone and iPad device files",
    .symbol = "iphone",
    .bucket = Bucket::smart,
    .confidence = 0.85,
    .risk = 2.0,
    .summary = "Support files Xcode saved for phones you once plugged in.",
    .why =
        "Xcode downloads these again the next time you connect that device. Only worth keeping if you develop apps "
        "and reconnect often.",
};

constexpr std::string_view simulators = "Library/Developer/CoreSimulator/Devices";
constexpr const char* simulatorName = "Simulated device ";

constexpr CardDescription simulatorCard = {
    .id = "sims",
    .title = "Old iPhone and iPad simulator files",
    .symbol = "ipad.and.iphone",
    .bucket = Bucket::smart,
    .confidence = 0.7,
    .risk = 3.0,
    .summary = "Pretend phones and tablets used for testing apps.",
    .why = "Simulators can be recreated, but any test data and apps installed inside them would be gone.",
};

constexpr std::string_view derivedData = "Library/Developer/Xcode/DerivedData";
// All projects share this one, and it is never offered.
constexpr std::string_view moduleCache = "ModuleCache.noindex";

constexpr CardDescription derivedDataCard = {
    .id = "derived",
    .title = "Old Xcode build leftovers",
    .symbol = "hammer",
    .bucket = Bucket::smart,
    .confidence = 0.9,
    .risk = 1.5,
    .summary = "Half-built app pieces Xcode keeps to build faster.",
    .why = "Xcode rebuilds all of this on demand. The next build of each project will just take longer.",
};

constexpr std::string_view archives = "Library/Developer/Xcode/Archives";
constexpr const char* archiveName = "Archives from ";

constexpr CardDescription archiveCard = {
    .id = "archives",
    .title = "Xcode app archives",
    .symbol = "archivebox",
    .bucket = Bucket::smart,
    .confidence = 0.5,
    .risk = 4.0,
    .summary = "Packaged copies of apps you built for release.",
    .why =
        "Archives hold the debug symbols needed to understand crashes in released apps. Keep them if an app version "
        "is still in use.",
};

std::vector<Entry> simulatedDevices(Probe& probe) {
    // A device that has gone meanwhile keeps its number.
    return childrenIn(probe, simulators, ListingDetail::kinds,
                      [number = 0](const FolderItem& item) mutable -> std::optional<Offer> {
                          if (!Uuid::parse(item.name)) {
                              return std::nullopt;
                          }
                          return Offer{simulatorName + std::to_string(++number)};
                      });
}

// Xcode names the folder of a project after it, with a hyphen and a long key behind.
std::string projectName(std::string_view folderName) {
    return label(folderName.substr(0, folderName.rfind('-')));
}

std::vector<Entry> builds(Probe& probe) {
    return childrenIn(probe, derivedData, ListingDetail::kinds, [](const FolderItem& item) {
        return item.name == moduleCache ? std::nullopt : std::optional(Offer{projectName(item.name)});
    });
}

std::vector<Entry> archivedDays(Probe& probe) {
    return childrenIn(probe, archives, ListingDetail::kinds,
                      [](const FolderItem& item) { return Offer{archiveName + label(item.name)}; });
}

}  // namespace

std::vector<Card> phoneAndTabletFiles(Probe& probe) {
    std::vector<Card> cards;
    addCard(cards, deviceSupportCard, Scanner::fixed(probe, deviceSupport));
    addCard(cards, simulatorCard, simulatedDevices(probe));
    return cards;
}

std::vector<Card> xcodeBuilds(Probe& probe) {
    std::vector<Card> cards;
    addCard(cards, derivedDataCard, builds(probe));
    addCard(cards, archiveCard, archivedDays(probe));
    return cards;
}

}  // namespace vesk::rules

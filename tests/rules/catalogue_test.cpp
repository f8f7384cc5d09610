// The catalogue of rules, and what every rule keeps to, tried on homes made at random.

#include "rules/catalogue.h"

#include <map>
#include <regex>

#include "rules/random_home.h"
#include "rules/rule_test.h"

namespace vesk {
namespace {

using namespace testing;

TEST(Catalogue, HasItsRulesInOrder) {
    std::vector<std::string> labels;
    for (const Spec& spec : Scanner::specs()) {
        labels.push_back(spec.label);
    }
    EXPECT_THAT(labels,
                ::testing::ElementsAre("Browser clones", "App caches", "Old crash reports", "Time Machine snapshots",
                                       "Phone and tablet files", "Xcode builds", "Dormant AI models",
                                       "Developer downloads", "Idle coding projects", "Virtual machine disks",
                                       "Video editing caches", "Leftover app folders", "Old downloads"));
}

// Where each card's entries may lie, below the root ("~" is the home).
const std::map<std::string, std::regex>& places() {
    const std::string name = "[^/]+";
    const std::string level = "(" + name + "/)";
    // A folder of the home in which projects are searched for, and up to four levels below it.
    const std::string project =
        "~/(?!(Library|Documents|Desktop|Pictures|Music|Movies|Downloads|Applications|Public)/|\\.)" + level +
        "((?!\\.)" + level + "){0,4}";
    const auto made = [](const std::string& pattern) { return std::regex(pattern, std::regex::ECMAScript); };
    static const std::map<std::string, std::regex> all = {
        {"clones", made("private/var/folders/" + name + "/" + name + "/X/[^/]*code_sign_clone[^/]*")},
        {"caches",
         made("~/Library/Caches/(?!com\\.apple\\.|Adobe|\\.|(Homebrew|pip|pnpm|huggingface|torch|CloudKit)$)" + name)},
        {"crash", made("~/Library/Logs/DiagnosticReports/(Retired/)?" + name)},
        {"devsupport", made("~/Library/Developer/Xcode/(iOS|watchOS|tvOS) DeviceSupport")},
        {"sims", made("~/Library/Developer/CoreSimulator/Devices/[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}")},
        {"derived", made("~/Library/Developer/Xcode/DerivedData/(?!ModuleCache.noindex$)" + name)},
        {"archives", made("~/Library/Developer/Xcode/Archives/" + name)},
        {"ai", made("~/(\\.cache/(huggingface|lm-studio|torch)|Library/Caches/(huggingface|torch)|"
                    "\\.ollama/models|\\.lmstudio/models)")},
        {"brew", made("~/Library/Caches/Homebrew")},
        {"pkg", made("~/(\\.npm|Library/pnpm/store|\\.pnpm-store|Library/Caches/(pnpm|pip)|\\.bun/install/cache|"
                     "\\.cache/pip)")},
        {"proj-node", made(project + "node_modules")},
        {"proj-next", made(project + "\\.next")},
        {"proj-venv", made(project + "\\.venv")},
        {"proj-cargo", made(project + "target")},
        {"vms",
         made("~/Library/(Containers/com\\.utmapp\\.UTM/Data/Documents|Containers/com\\.docker\\.docker/Data/vms|"
              "Group Containers/group\\.com\\.docker)")},
        {"video", made("~/(Library/Application Support/Adobe/Common/(Media Cache Files|Media Cache|Peak Files)|"
                       "Library/Caches/Adobe After Effects[^/]*|Movies/" +
                       name + "\\.fcpbundle/" + level + "{1,2}(Render Files|Transcoded Media))")},
        {"orphans", made("~/Library/Application Support/(?!\\.|com\\.apple)" + name)},
        {"downloads", made("~/Downloads/" + name)},
    };
    return all;
}

// Things that random names would seldom bring together.
constexpr const char* rare[] = {"code/app/Cargo.toml",
                                "code/app/target/a",
                                "app/package.json",
                                "app/.next/a",
                                "Library/Developer/CoreSimulator/Devices/A4D1C0F2-2B78-4F3C-8E69-71B1D5C09E42/a",
                                "Library/Application Support/Gone Studio/a",
                                "Downloads/old",
                                "code/deep/er/app/.venv/a",
                                "Movies/Trip.fcpbundle/Event/Day/Render Files/a",
                                "Library/Developer/Xcode/tvOS DeviceSupport/a"};

constexpr const char* locations[] = {
    "private/var/folders/a/b/X",
    "private/var/folders/a/c",
    "~/Library/Caches",
    "~/Library/Caches/Homebrew",
    "~/Library/Logs/DiagnosticReports",
    "~/Library/Logs/DiagnosticReports/Retired",
    "~/Library/Developer/Xcode/iOS DeviceSupport",
    "~/Library/Developer/CoreSimulator/Devices",
    "~/Library/Developer/Xcode/DerivedData",
    "~/Library/Developer/Xcode/Archives",
    "~/.cache/huggingface",
    "~/.ollama/models",
    "~/.npm",
    "~/.cache/pip",
    "~/code",
    "~/code/app",
    "~/code/deep/er/app",
    "~/app",
    "~/Documents/app",
    "~/.config",
    "~/Library/Containers/com.docker.docker/Data/vms",
    "~/Library/Application Support/Adobe/Common/Media Cache",
    "~/Movies",
    "~/Movies/Trip.fcpbundle/Event",
    "~/Movies/Trip.fcpbundle/Event/Day",
    "~/Library/Application Support",
    "Applications",
    "Applications/Suite",
    "~/Downloads",
    "~",
    "elsewhere",
};

constexpr const char* names[] = {
    "a",
    "b.txt",
    "com.apple.x",
    "com.vendor.tool",
    "my code_sign_clone",
    "Homebrew",
    "torch",
    "CloudKit",
    "Adobe After Effects 2024",
    "Adobe",
    ".hidden",
    "node_modules",
    ".next",
    ".venv",
    "target",
    "package.json",
    "Cargo.toml",
    "src",
    "Render Files",
    "Transcoded Media",
    "Other.fcpbundle",
    "Some.app",
    "Tool.app",
    "A4D1C0F2-2B78-4F3C-8E69-71B1D5C09E42",
    "ModuleCache.noindex",
    "App-key",
    "X",
    "Retired",
    "caf\xC3\xA9",
    "cafe\xCC\x81",
    "bad\xFF\xFEname",
    "new\nline",
    "Steam",
    "Gone Studio",
};

constexpr unsigned homes = 14;

class RandomHomes : public TemporaryHome {};

TEST_F(RandomHomes, AreSearchedInTheRightPlacesAndLeftAsTheyAre) {
    stopClock(now());
    expectRulesToKeepToPlaces({rare, locations, names}, places(), homes);
}

}  // namespace
}  // namespace vesk

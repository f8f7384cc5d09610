// What every rule keeps to in a Linux home, tried on homes made at random.

#include "rules/linux_rule_test.h"
#include "rules/random_home.h"

namespace vesk {
namespace {

using namespace testing;

// Where each card's entries may lie, below the root ("~" is the home).
std::map<std::string, std::regex> placesOfLinux() {
    const std::string name = "[^/]+";
    const std::string project =
        "~/(?!(Documents|Desktop|Pictures|Downloads|snap|tools/models)/|\\.)" + name + "/((?!\\.)" + name + "/){0,4}";
    const auto made = [](const std::string& pattern) { return std::regex(pattern, std::regex::ECMAScript); };
    const std::string caches = "(mozilla|chromium|google-chrome[^/]*|thumbnails|go-build|yarn|ccache|pre-commit)";
    return {
        {"caches", made("~/(\\.cache/" + caches + "|\\.var/app/" + name + "/cache/" + caches + "|\\.config/" + name +
                        "/(Cache|Code Cache|GPUCache))")},
        {"crash", made("~/(\\.mozilla/firefox/Crash Reports/(pending/[^/]+\\.(dmp|extra)|submitted/bp-[^/]*\\.txt)|"
                       "\\.config/(chromium/Crash Reports|[^/]+/Crashpad)/(new|pending|completed)/[^/]+\\.(dmp|meta)|"
                       "\\.cache/kcrash-metadata/[^/]+\\.ini)")},
        {"ai", made("~/(\\.cache/huggingface/hub/models--[^/]*|\\.cache/torch/hub/checkpoints|\\.ollama/models|"
                    "\\.lmstudio/models|tools/models)")},
        {"brew", made("~/\\.cache/Homebrew/downloads")},
        {"pkg", made("~/(\\.npm|\\.local/share/pnpm/store|\\.pnpm-store|\\.cache/(pnpm|pip)|\\.bun/install/cache)")},
        {"proj-node", made(project + "node_modules")},
        {"proj-next", made(project + "\\.next")},
        {"proj-venv", made(project + "\\.venv")},
        {"proj-cargo", made(project + "target")},
        {"vms", made("~/\\.docker/desktop/vms")},
        {"orphans", made("~/(\\.var/app/(?!\\.)|snap/)[^/]+")},
        {"downloads", made("~/Downloads/" + name)},
    };
}

constexpr const char* rareOnLinux[] = {"code/app/Cargo.toml",
                                       "code/app/target/a",
                                       "app/package.json",
                                       "app/.next/a",
                                       "code/deep/er/app/.venv/a",
                                       "app/node_modules/a",
                                       "Downloads/old",

                                       ".var/app/org.gone.App/data/a",
                                       "snap/gone/common/a",
                                       ".cache/mozilla/a",
                                       ".config/Notes/Local Storage/a",
                                       ".config/Notes/Cache/a",
                                       ".config/Notes/Crashpad/settings.dat",
                                       ".config/Notes/Crashpad/new/a.dmp",
                                       ".cache/kcrash-metadata/a.ini",
                                       ".cache/Homebrew/downloads/a",
                                       ".docker/desktop/vms/a",
                                       ".cache/huggingface/hub/models--a/a",
                                       ".npm/a",
                                       "tools/models/a"};

constexpr const char* locationsOnLinux[] = {"~/.cache",
                                            "~/.cache/mozilla",
                                            "~/.cache/huggingface/hub",
                                            "~/.cache/torch/hub",
                                            "~/.cache/kcrash-metadata",
                                            "~/.cache/Homebrew",
                                            "~/.config",
                                            "~/.config/Notes",
                                            "~/.config/Notes/Crashpad",
                                            "~/.config/chromium/Crash Reports",
                                            "~/.mozilla/firefox/Crash Reports/pending",
                                            "~/.mozilla/firefox/Crash Reports/submitted",
                                            "~/.local/share/pnpm",
                                            "~/.bun/install/cache",
                                            "~/.pnpm-store",
                                            "~/.npm",
                                            "~/.ollama",
                                            "~/.lmstudio",
                                            "~/.docker",
                                            "~/.docker/desktop",
                                            "~/.var/app",
                                            "~/.var/app/org.gone.App/cache",
                                            "~/snap",
                                            "~/snap/gone",
                                            "~/code",
                                            "~/code/app",
                                            "~/app",
                                            "~/Bilder",
                                            "~/Downloads",
                                            "~/Laden",
                                            "~/tools",
                                            "~",
                                            "elsewhere",
                                            "snap",
                                            "var/lib/flatpak/app"};

constexpr const char* namesOnLinux[] = {"a",
                                        "b.txt",
                                        "mozilla",
                                        "chromium",
                                        "google-chrome-beta",
                                        "yarn",
                                        "obexd",
                                        "Local Storage",
                                        "Cache",
                                        "GPUCache",
                                        "Crashpad",
                                        "settings.dat",
                                        "new",
                                        "pending",
                                        "a.dmp",
                                        "a.meta",
                                        "a.ini",
                                        "bp-1.txt",
                                        "submit.log",
                                        "models",
                                        "models--acme--small",
                                        "datasets--acme",
                                        "checkpoints",
                                        "token",
                                        "downloads",
                                        "store",
                                        "v10",
                                        "links",
                                        "_cacache",
                                        "node_modules",
                                        "lib",
                                        "package.json",
                                        "target",
                                        "Cargo.toml",
                                        ".venv",
                                        ".next",
                                        ".hidden",
                                        "vms",
                                        "config.json",
                                        "org.gone.App",
                                        "org.here.App",
                                        "here",
                                        "common",
                                        "current",
                                        "caf\xC3\xA9",
                                        "bad\xFF\xFEname",
                                        "new\nline"};

class RandomLinuxHomes : public LinuxRuleTest {};

TEST_F(RandomLinuxHomes, AreSearchedInTheRightPlacesAndLeftAsTheyAre) {
    stopClock(now());
    setVariables({{"OLLAMA_MODELS", testHome() / "tools/models"}, {"PIP_CACHE_DIR", testHome() / ".cache"}});
    expectRulesToKeepToPlaces({rareOnLinux, locationsOnLinux, namesOnLinux}, placesOfLinux(), 14);
}

}  // namespace
}  // namespace vesk

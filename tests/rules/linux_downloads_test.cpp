// What tools download in a Linux home: models, packages, disks.

#include "rules/linux_rule_test.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using LinuxModels = LinuxRuleTest;
using LinuxPackages = LinuxRuleTest;
using LinuxDisks = LinuxRuleTest;

std::vector<std::string> packages() {
    return linesOf(run(rules::developerDownloads).card("pkg"));
}

TEST_F(LinuxModels, AreTheModelsAndNotWhatLiesBesideThem) {
    make({".cache/huggingface/hub/models--acme--small/blobs/1", ".cache/huggingface/hub/models--acme--tiny/blobs/1",
          ".cache/huggingface/hub/datasets--acme--texts/blobs/1", ".cache/huggingface/hub/version.txt",
          ".cache/huggingface/token", ".cache/huggingface/stored_tokens", ".cache/huggingface/xet/1",
          ".cache/huggingface/assets/1", ".cache/torch/hub/checkpoints/a.pth", ".cache/torch/hub/acme_code/hubconf.py",
          ".ollama/models/blobs/1", ".ollama/id_ed25519", ".ollama/history", ".lmstudio/models/acme/1",
          ".lmstudio/conversations/1", ".lmstudio/hub/1", ".cache/lm-studio/models/acme/1",
          ".cache/lm-studio/config-presets/1"});
    EXPECT_THAT(
        linesOf(run(rules::dormantModels)),
        UnorderedElementsAre(".cache/huggingface/hub/models--acme--small: Hugging Face models",
                             ".cache/huggingface/hub/models--acme--tiny: Hugging Face models",
                             ".cache/torch/hub/checkpoints: PyTorch models", ".ollama/models: Ollama models",
                             ".lmstudio/models: LM Studio models", ".cache/lm-studio/models: LM Studio models"));
}

TEST_F(LinuxModels, LieWhereVariablesSayToo) {
    setVariables({{"HF_HUB_CACHE", testHome() / "a"},
                  {"HUGGINGFACE_HUB_CACHE", testHome() / "b"},
                  {"HF_HOME", testHome() / "c"},
                  {"TORCH_HOME", testHome() / "d"},
                  {"OLLAMA_MODELS", testHome() / "e"}});
    make({"a/models--x/1", "b/models--x/1", "c/hub/models--x/1", "c/token", "d/hub/checkpoints/1", "d/hub/code/1",
          "e/blobs/1", ".ollama/models/blobs/1"});
    EXPECT_THAT(linesOf(run(rules::dormantModels)),
                UnorderedElementsAre("a/models--x: Hugging Face models", "b/models--x: Hugging Face models",
                                     "c/hub/models--x: Hugging Face models", "d/hub/checkpoints: PyTorch models",
                                     "e: Ollama models", ".ollama/models: Ollama models"));
}

TEST_F(LinuxModels, OutsideTheHomeAreOutOfReach) {
    makeFile(testRoot() / "outside/models/1");
    make({".ollama/models/1", "models/1"});
    for (const std::filesystem::path& place :
         {testRoot() / "outside/models", testHome() / "../../outside/models", testHome(), testHome().parent_path()}) {
        setVariables({{"OLLAMA_MODELS", place}});
        EXPECT_THAT(linesOf(run(rules::dormantModels)), ElementsAre(".ollama/models: Ollama models")) << place;
    }
}

TEST_F(LinuxModels, OfLmStudioLieWhereItsPointerSaysToo) {
    make({"studio/models/1", "studio/conversations/1"});
    for (const std::string& text : {testHome().string() + "/studio\n", std::string(" ~/studio/ \n")}) {
        writeFile(testHome() / ".lmstudio-home-pointer", text);
        EXPECT_THAT(linesOf(run(rules::dormantModels)), ElementsAre("studio/models: LM Studio models")) << text;
    }
    make({"models/1"});
    for (const std::string& text : {std::string(), std::string("studio"), testHome().string(), std::string("/"),
                                    testRoot().string(), std::string("~/../x"), std::string("~")}) {
        writeFile(testHome() / ".lmstudio-home-pointer", text);
        EXPECT_THAT(run(rules::dormantModels).cards, IsEmpty()) << text;
    }
    std::filesystem::remove(testHome() / ".lmstudio-home-pointer");
    makeFolder(testHome() / ".lmstudio-home-pointer");
    EXPECT_THAT(run(rules::dormantModels).cards, IsEmpty());
}

TEST_F(LinuxModels, AreOneEntryHoweverManyPathsLeadToThem) {
    make({".ollama/models/1", ".cache/huggingface/hub/models--x/1"});
    makeLink(testHome() / "hf", testHome() / ".cache/huggingface");
    makeLink(testHome() / "models", testHome() / ".ollama/models");
    setVariables({{"HF_HOME", testHome() / "hf"},
                  {"HF_HUB_CACHE", testHome() / ".cache/huggingface/hub/"},
                  {"OLLAMA_MODELS", testHome() / "models"}});
    const std::vector<std::string> lines = linesOf(run(rules::dormantModels));
    EXPECT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines, ::testing::Contains(".ollama/models: Ollama models"));
}

TEST_F(LinuxModels, MayBeLinksOrFilesButASingleModelIsAFolder) {
    makeFile(testRoot() / "disk/models/1");
    makeLink(testHome() / ".ollama/models", testRoot() / "disk/models");
    makeLink(testHome() / ".cache/torch/hub/checkpoints", testRoot() / "gone");
    makeFile(testHome() / ".lmstudio/models");
    makeFile(testHome() / ".cache/huggingface/hub/models--file");
    makeLink(testHome() / ".cache/huggingface/hub/models--link", testRoot() / "disk/models");
    EXPECT_THAT(linesOf(run(rules::dormantModels)),
                UnorderedElementsAre(".ollama/models: Ollama models", ".lmstudio/models: LM Studio models"));
    const Refused folder(testHome() / ".cache/huggingface/hub");
    EXPECT_TRUE(run(rules::dormantModels).blocked);
}

TEST_F(LinuxPackages, AreThoseOfFourTools) {
    make({".npm/_cacache/1", ".npm/_logs/1", ".local/share/pnpm/store/v10/files/1", ".local/share/pnpm/global/1",
          ".pnpm-store/v3/files/1", ".cache/pnpm/metadata/1", ".bun/install/cache/1", ".cache/.bun/install/cache/1",
          ".bun/install/global/1", ".cache/pip/http-v2/1", ".cache/yarn/1", ".cache/uv/1", ".cargo/registry/1",
          "go/pkg/mod/1", ".gradle/caches/1", ".m2/repository/1", ".conda/pkgs/1"});
    EXPECT_THAT(packages(), UnorderedElementsAre(".npm: npm cache", ".local/share/pnpm/store: pnpm cache",
                                                 ".pnpm-store: pnpm cache", ".cache/pnpm: pnpm cache",
                                                 ".bun/install/cache: bun cache",
                                                 ".cache/.bun/install/cache: bun cache", ".cache/pip: pip cache"));
    make({".cache/Homebrew/downloads/a.tar", ".cache/Homebrew/Logs/1", ".cache/Homebrew/api/1"});
    EXPECT_THAT(linesOf(run(rules::developerDownloads).card("brew")),
                ElementsAre(".cache/Homebrew/downloads: Homebrew downloads"));
}

TEST_F(LinuxPackages, LieWhereVariablesSayToo) {
    setVariables({{"npm_config_cache", testHome() / "n"},
                  {"PNPM_HOME", testHome() / "p"},
                  {"BUN_INSTALL_CACHE_DIR", testHome() / "b"},
                  {"BUN_INSTALL", testHome() / "i"},
                  {"PIP_CACHE_DIR", testHome() / "q"},
                  {"HOMEBREW_CACHE", testHome() / "h"}});
    make({"n/_cacache/1", "n/_npx/1", "n/precious", "p/store/v10/1", "p/pnpm", "b/1", "i/install/cache/1", "i/bin/bun",
          "q/http/1", "h/downloads/1", "h/other/1"});
    EXPECT_THAT(packages(), UnorderedElementsAre("n/_cacache: npm cache", "n/_npx: npm cache", "p/store: pnpm cache",
                                                 "b: bun cache", "i/install/cache: bun cache", "q: pip cache"));
    EXPECT_THAT(linesOf(run(rules::developerDownloads).card("brew")), ElementsAre("h/downloads: Homebrew downloads"));
}

TEST_F(LinuxPackages, ThatProjectsLinkIntoStay) {
    make({".local/share/pnpm/store/v10/files/1", ".local/share/pnpm/store/v10/links/@/react/1",
          ".bun/install/cache/react/1", ".bun/install/cache/links/react/1", ".pnpm-store/v10/files/1"});
    makeFolder(testHome() / ".pnpm-store/v10/links");
    EXPECT_THAT(packages(), ElementsAre(".pnpm-store: pnpm cache"));
    makeFolder(testHome() / ".pnpm-store/v10/links/.hidden");
    EXPECT_THAT(packages(), IsEmpty());
    std::filesystem::remove(testHome() / ".pnpm-store/v10/links/.hidden");
    const Refused folder(testHome() / ".pnpm-store/v10/links");
    EXPECT_THAT(packages(), IsEmpty());
}

TEST_F(LinuxPackages, InsideOneAnotherCountOnce) {
    make({".npm/_cacache/1", ".npm/_npx/1"});
    setVariables({{"npm_config_cache", testHome() / ".npm"}});
    EXPECT_THAT(packages(), ElementsAre(".npm: npm cache"));
}

// Seen with PIP_CACHE_DIR=~/.cache: the tool's files lie among everybody's, and the whole of it would go.
TEST_F(LinuxPackages, AreNeverAFolderThatOthersUseToo) {
    make({".cache/http-v2/1", ".cache/yarn/1", ".config/1", ".local/share/1", "Dokumente/letter", "Bilder/1"});
    makeUserFolders("XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\nXDG_PICTURES_DIR=\"$HOME/Bilder/Alle\"\n");
    makeFile(testHome() / "Bilder/Alle/1");
    for (const char* place : {".cache", ".config", ".local/share", ".local", "Dokumente", "Bilder", "Bilder/Alle"}) {
        setVariables({{"PIP_CACHE_DIR", testHome() / place}, {"BUN_INSTALL_CACHE_DIR", testHome() / place}});
        EXPECT_THAT(packages(), IsEmpty()) << place;
    }
    makeLink(testHome() / "home", testHome());
    setVariables({{"PIP_CACHE_DIR", testHome() / "home"}});
    EXPECT_THAT(packages(), IsEmpty());
}

TEST_F(LinuxDisks, AreDockersAloneAndNotItsLogins) {
    make({".docker/desktop/vms/0/data/Docker.raw", ".docker/config.json", ".docker/desktop/settings.json",
          ".local/share/gnome-boxes/images/1", ".local/share/libvirt/images/1", "VirtualBox VMs/1"});
    EXPECT_THAT(linesOf(run(rules::virtualMachineDisks)), ElementsAre(".docker/desktop/vms: Docker disk image"));
}

TEST_F(LinuxDisks, AreNoneOfAMac) {
    showMac();
    make({".docker/desktop/vms/0/data/Docker.raw", ".local/share/pnpm/store/v10/1", ".cache/pnpm/1",
          ".cache/huggingface/token"});
    EXPECT_THAT(run(rules::virtualMachineDisks).cards, IsEmpty());
    EXPECT_THAT(packages(), IsEmpty());
    EXPECT_THAT(linesOf(run(rules::dormantModels)), ElementsAre(".cache/huggingface: Hugging Face models"));
}

}  // namespace
}  // namespace vesk

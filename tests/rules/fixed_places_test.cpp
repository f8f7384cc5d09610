// The rules that consist of a list of places: models, Homebrew, package caches and virtual machines.

#include "rules/rule_test.h"
#include "rules/rules.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class FixedPlaces : public RuleTest {
protected:
    // Makes a file of one block at each place, and expects an entry of that name for each, in order.
    static void expectEach(Rule rule, const char* card,
                           const std::vector<std::pair<const char*, const char*>>& places) {
        std::vector<std::string> expected;
        for (const auto& [path, name] : places) {
            makeFile(testHome() / path / "deep/inside/file");
            expected.push_back(std::string(path) + ": " + name);
        }
        const RuleResult result = run(rule);
        EXPECT_THAT(linesOf(result.card(card)), ElementsAreArray(expected));
        for (const Card& each : result.cards) {
            EXPECT_EQ(each.bucket, Bucket::smart);
            EXPECT_FALSE(each.selected);
        }
    }
};

TEST_F(FixedPlaces, OfModels) {
    expectEach(rules::dormantModels, "ai",
               {{".cache/huggingface", "Hugging Face models"},
                {"Library/Caches/huggingface", "Hugging Face models"},
                {".ollama/models", "Ollama models"},
                {".cache/lm-studio", "LM Studio models"},
                {".lmstudio/models", "LM Studio models"},
                {".cache/torch", "PyTorch models"},
                {"Library/Caches/torch", "PyTorch models"}});
}

TEST_F(FixedPlaces, OfHomebrewAndPackages) {
    expectEach(rules::developerDownloads, "brew", {{"Library/Caches/Homebrew", "Homebrew downloads"}});
    expectEach(rules::developerDownloads, "pkg",
               {{".npm", "npm cache"},
                {"Library/pnpm/store", "pnpm cache"},
                {".pnpm-store", "pnpm cache"},
                {"Library/Caches/pnpm", "pnpm cache"},
                {".bun/install/cache", "bun cache"},
                {"Library/Caches/pip", "pip cache"},
                {".cache/pip", "pip cache"}});
    EXPECT_THAT(idsOf(run(rules::developerDownloads)), ElementsAre("brew", "pkg"));
}

TEST_F(FixedPlaces, OfVirtualMachines) {
    expectEach(rules::virtualMachineDisks, "vms",
               {{"Library/Containers/com.utmapp.UTM/Data/Documents", "UTM virtual machines"},
                {"Library/Containers/com.docker.docker/Data/vms", "Docker disk image"},
                {"Library/Group Containers/group.com.docker", "Docker data"}});
}

TEST_F(FixedPlaces, ThatAreMissingOrEmptyGiveNoCard) {
    for (const Rule rule : {rules::dormantModels, rules::developerDownloads, rules::virtualMachineDisks}) {
        EXPECT_THAT(run(rule).cards, IsEmpty());
    }
    makeFolder(testHome() / ".npm");
    makeFolder(testHome() / ".ollama/models");
    makeFile(testHome() / "Library/Group Containers/group.com.docker/empty", 0);
    makeFile(testHome() / "Library/Caches/Homebrew/a");
    EXPECT_THAT(run(rules::dormantModels).cards, IsEmpty());
    EXPECT_THAT(idsOf(run(rules::developerDownloads)), ElementsAre("brew"));
    EXPECT_THAT(run(rules::virtualMachineDisks).cards, IsEmpty());
}

TEST_F(FixedPlaces, AreOfferedHoweverRecentlyUsed) {
    makeFile(testHome() / ".ollama/models/today");
    EXPECT_EQ(run(rules::dormantModels).cards.at(0).dormancyDays, 1.0);
    stopClock(now());
    setDates(testHome() / ".ollama/models/today", daysAgo(0), daysAgo(52.5));
    EXPECT_NEAR(run(rules::dormantModels).cards.at(0).dormancyDays, 52.5, 1e-6);
}

TEST_F(FixedPlaces, MayBeLinksOrFiles) {
    makeFile(testRoot() / "Volumes/Disk/models/file", 8192);
    makeLink(testHome() / ".ollama/models", testRoot() / "Volumes/Disk/models");
    makeLink(testHome() / ".cache/torch", testRoot() / "Volumes/Gone");
    makeFile(testHome() / ".cache/huggingface", 4096);
    EXPECT_THAT(linesOf(run(rules::dormantModels)),
                ElementsAre(".ollama/models: Ollama models", ".cache/huggingface: Hugging Face models"));
}

TEST_F(FixedPlaces, ReportWhatMeasuringWasDenied) {
    makeFile(testHome() / ".npm/open/file");
    makeFile(testHome() / ".npm/denied/file");
    const Denied folder(testHome() / ".npm/denied");
    const RuleResult result = run(rules::developerDownloads);
    EXPECT_EQ(result.cards.at(0).size(), allocated(testHome() / ".npm/open/file"));
    EXPECT_TRUE(result.blocked);
}

}  // namespace
}  // namespace vesk

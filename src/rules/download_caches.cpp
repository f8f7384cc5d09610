// What tools have downloaded and fetch again on demand: models of local AI tools, Homebrew's installers and package
// caches. Each place is one entry, whole, however recently it was used. "App caches" leaves out those of its places
// that stand here.

#include "core/scanner.h"
#include "rules/place_search.h"
#include "rules/rule_support.h"
#include "rules/rules.h"

namespace vesk::rules {

namespace {

// Tools have moved their stores over the years, so several places share a name.
constexpr FixedLocation models[] = {
    {".cache/huggingface", "Hugging Face models"}, {"Library/Caches/huggingface", "Hugging Face models"},
    {".ollama/models", "Ollama models"},           {".cache/lm-studio", "LM Studio models"},
    {".lmstudio/models", "LM Studio models"},      {".cache/torch", "PyTorch models"},
    {"Library/Caches/torch", "PyTorch models"},
};

constexpr CardDescription modelCard = {
    .id = "ai",
    .title = "Dormant AI models",
    .symbol = "brain.head.profile",
    .bucket = Bucket::smart,
    .confidence = 0.7,
    .risk = 3.0,
    .summary = "Downloaded AI models that haven't been used lately.",
    .why =
        "Models can be downloaded again, but they're often many gigabytes, so only clear the ones you no longer "
        "run.",
};

constexpr FixedLocation homebrew[] = {{"Library/Caches/Homebrew", "Homebrew downloads"}};

constexpr CardDescription homebrewCard = {
    .id = "brew",
    .title = "Homebrew download cache",
    .symbol = "shippingbox",
    .bucket = Bucket::smart,
    .confidence = 0.9,
    .risk = 1.5,
    .summary = "Installer files Homebrew kept after installing tools.",
    .why = "Homebrew fetches them again whenever it needs them.",
};

constexpr FixedLocation packages[] = {
    {".npm", "npm cache"},
    {"Library/pnpm/store", "pnpm cache"},
    {".pnpm-store", "pnpm cache"},
    {"Library/Caches/pnpm", "pnpm cache"},
    {".bun/install/cache", "bun cache"},
    {"Library/Caches/pip", "pip cache"},
    {".cache/pip", "pip cache"},
};

constexpr CardDescription packageCard = {
    .id = "pkg",
    .title = "Coding package caches",
    .symbol = "shippingbox.fill",
    .bucket = Bucket::smart,
    .confidence = 0.9,
    .risk = 1.5,
    .summary = "Saved downloads from npm, pnpm, bun and pip.",
    .why = "These tools redownload packages when needed. Your next install may just be slower.",
};

}  // namespace

std::vector<Card> dormantModels(Probe& probe) {
    return cardOf(modelCard, entriesAt(probe, models, linuxModels));
}

std::vector<Card> developerDownloads(Probe& probe) {
    std::vector<Card> cards;
    addCard(cards, homebrewCard, entriesAt(probe, homebrew, linuxHomebrew));
    addCard(cards, packageCard, entriesAt(probe, packages, linuxPackages));
    return cards;
}

}  // namespace vesk::rules

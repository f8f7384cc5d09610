// Settings of other programs that Vesk goes by: variables that name folders, user-dirs.dirs, key files.

#include <gmock/gmock.h>

#include <algorithm>

#include "platform/files/reading.h"
#include "platform/system/folder_variables.h"
#include "platform/system/key_file.h"
#include "platform/system/user_folders.h"
#include "support/temporary_home.h"

namespace vesk {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::UnorderedElementsAre;

using Folders = std::multimap<std::string, std::filesystem::path>;

Folders foldersOf(const std::vector<const char*>& variables) {
    std::vector<const char*> environment = variables;
    environment.push_back(nullptr);
    return variableFolders(environment.data(), "/home/u");
}

TEST(FolderVariables, NameAbsoluteFoldersOrSomeBelowTheHome) {
    EXPECT_THAT(foldersOf({"PIP_CACHE_DIR=/data/pip", "TORCH_HOME=~/torch/", "BUN_INSTALL=/a/../b//c", "PATH=/bin",
                           "UNKNOWN_CACHE=/x", "HF_HOMES=/x"}),
                UnorderedElementsAre(Pair("PIP_CACHE_DIR", "/data/pip"), Pair("TORCH_HOME", "/home/u/torch"),
                                     Pair("BUN_INSTALL", "/b/c")));
}

TEST(FolderVariables, EmptyAndRelativeNameNothing) {
    EXPECT_THAT(foldersOf({"PIP_CACHE_DIR=", "TORCH_HOME=torch", "BUN_INSTALL=./bun", "OLLAMA_MODELS=\"\"",
                           "HF_HOME=~other/x", "PNPM_HOME", "HOMEBREW_CACHE=~", "pip_cache_dir=/x"}),
                IsEmpty());
}

TEST(FolderVariables, OfNpmComeInAnyCase) {
    EXPECT_THAT(foldersOf({"NPM_CONFIG_CACHE=/a", "npm_config_cache=/b", "Npm_Config_Cache=c"}),
                UnorderedElementsAre(Pair("npm_config_cache", "/a"), Pair("npm_config_cache", "/b")));
}

TEST(FolderVariables, OfOllamaMayBeQuoted) {
    EXPECT_THAT(foldersOf({"OLLAMA_MODELS= \"/models\" ", "TORCH_HOME=\"/torch\""}),
                ElementsAre(Pair("OLLAMA_MODELS", "/models")));
}

TEST(FolderVariables, OfHuggingFaceMayHoldOthers) {
    EXPECT_THAT(foldersOf({"DATA=/data", "HF_HOME=$DATA/hf", "HF_HUB_CACHE=${DATA}/hub", "PIP_CACHE_DIR=$DATA/pip"}),
                UnorderedElementsAre(Pair("HF_HOME", "/data/hf"), Pair("HF_HUB_CACHE", "/data/hub")));
    EXPECT_THAT(foldersOf({"HF_HOME=/x/$MISSING/${ALSO}/${open/$"}),
                ElementsAre(Pair("HF_HOME", "/x/$MISSING/${ALSO}/${open/$")));
}

TEST(UserFolders, AreReadAsTheirToolReadsThem) {
    const auto folders = userFoldersIn(
        "# XDG_MUSIC_DIR=\"$HOME/No\"\n"
        "XDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n"
        "  XDG_DOWNLOAD_DIR = \"/data/Downloads//\"\n"
        "XDG_DOCUMENTS_DIR=\"$HOME/First\"\n"
        "XDG_DOCUMENTS_DIR=\"$HOME/\\\"Last\\\"\\\\\"\n"
        "XDG_PICTURES_DIR=\"$HOME/\"\n"
        "XDG_MUSIC_DIR=\"$HOME/x/..\"\n"
        "XDG_VIDEOS_DIR=\"$HOMEwork\"\n"
        "XDG_TEMPLATES_DIR=\"relative\"\n"
        "XDG_PUBLICSHARE_DIR=$HOME/Unquoted\n"
        "XDG_OTHER_DIR=\"$HOME/Other\"\n"
        "XDG__DIR=\"/x\"\nXDG_DIR=\"/x\"\n=\n\"\n"
        "XDG_PROJECTS_DIR=\"$HOME/`touch x`\"",
        "/home/u");
    EXPECT_THAT(folders,
                UnorderedElementsAre(Pair("DESKTOP", "/home/u/Schreibtisch"), Pair("DOWNLOAD", "/data/Downloads"),
                                     Pair("DOCUMENTS", "/home/u/\"Last\"\\"), Pair("PROJECTS", "/home/u/`touch x`")));
}

TEST(KeyFiles, HoldValuesInGroups) {
    constexpr std::string_view text =
        "Name=before\n[One]\r\n#Name=comment\nName = first\r\nName=second\n[Two]\nName=\nno line\n[broken\n";
    EXPECT_EQ(keyFileValue(text, "One", "Name"), "first");
    EXPECT_EQ(keyFileValue(text, "Two", "Name"), "");
    EXPECT_EQ(keyFileValue(text, "", "Name"), "before");
    EXPECT_EQ(keyFileValue(text, "Three", "Name"), std::nullopt);
    EXPECT_EQ(keyFileValue(text, "One", "Icon"), std::nullopt);
}

class ReadingTest : public testing::TemporaryHome {};

TEST_F(ReadingTest, TakesRegularFilesOfAModestSize) {
    testing::writeFile(testing::testHome() / "file", "12345");
    EXPECT_EQ(readWithoutTrace(testing::testHome() / "file", 5), "12345");
    EXPECT_EQ(readWithoutTrace(testing::testHome() / "file", 4), std::nullopt);
    EXPECT_EQ(readWithoutTrace(testing::testHome(), 5), std::nullopt);
    EXPECT_EQ(readWithoutTrace(testing::testHome() / "missing", 5), std::nullopt);
}

}  // namespace
}  // namespace vesk

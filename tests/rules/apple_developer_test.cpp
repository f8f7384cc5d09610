// What Apple's developer tools leave.

#include "rules/rule_test.h"
#include "rules/rules.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using PhoneFiles = RuleTest;
using XcodeBuilds = RuleTest;

std::filesystem::path xcode() {
    return testHome() / "Library/Developer/Xcode";
}

std::filesystem::path devices() {
    return testHome() / "Library/Developer/CoreSimulator/Devices";
}

TEST_F(PhoneFiles, AreNothingWithoutXcode) {
    for (const Rule rule : {rules::phoneAndTabletFiles, rules::xcodeBuilds}) {
        const RuleResult result = run(rule);
        EXPECT_THAT(result.cards, IsEmpty());
        EXPECT_FALSE(result.blocked);
    }
}

TEST_F(PhoneFiles, OfEachKindOfDeviceAreOneEntry) {
    makeFile(xcode() / "tvOS DeviceSupport/a", 4096);
    makeFile(xcode() / "iOS DeviceSupport/17.4/a", 4096);
    makeFile(xcode() / "iOS DeviceSupport/17.5/a", 4096);
    makeFile(xcode() / "watchOS DeviceSupport/a", 4096);
    makeFile(xcode() / "visionOS DeviceSupport/a", 4096);
    const RuleResult result = run(rules::phoneAndTabletFiles);
    EXPECT_THAT(idsOf(result), ElementsAre("devsupport"));
    EXPECT_THAT(linesOf(result.card("devsupport")),
                ElementsAre("Library/Developer/Xcode/iOS DeviceSupport: iPhone & iPad debug support",
                            "Library/Developer/Xcode/watchOS DeviceSupport: Apple Watch debug support",
                            "Library/Developer/Xcode/tvOS DeviceSupport: Apple TV debug support"));
    EXPECT_FALSE(result.cards[0].selected);
}

TEST_F(PhoneFiles, OfSimulatorsAreThoseFoldersNamedByAnIdentifier) {
    const char* first = "0C5B8B2E-6C1D-4E0B-9A57-0C5B8B2E7D11";
    const char* second = "a4d1c0f2-2b78-4f3c-8e69-71b1d5c09e42";
    for (const char* name :
         {second, first, "A4D1C0F2-2B78-4F3C-8E69-71B1D5C09E4", "A4D1C0F22B784F3C8E6971B1D5C09E42",
          "{A4D1C0F2-2B78-4F3C-8E69-71B1D5C09E42}", "G4D1C0F2-2B78-4F3C-8E69-71B1D5C09E42", "notes"}) {
        makeFile(devices() / name / "data");
    }
    makeFile(devices() / "device_set.plist");
    const RuleResult result = run(rules::phoneAndTabletFiles);
    EXPECT_THAT(idsOf(result), ElementsAre("sims"));
    const std::string folder = "Library/Developer/CoreSimulator/Devices/";
    EXPECT_THAT(linesOf(result.card("sims")),
                ElementsAre(folder + first + ": Simulated device 1", folder + second + ": Simulated device 2"));
    EXPECT_FALSE(result.cards[0].selected);
}

TEST_F(PhoneFiles, OfADeviceThatIsGoneKeepItsNumber) {
    makeFile(devices() / "11111111-2B78-4F3C-8E69-71B1D5C09E42/data");
    makeLink(devices() / "22222222-2B78-4F3C-8E69-71B1D5C09E42", testRoot() / "nowhere");
    makeFile(devices() / "33333333-2B78-4F3C-8E69-71B1D5C09E42");
    const std::string folder = "Library/Developer/CoreSimulator/Devices/";
    EXPECT_THAT(linesOf(run(rules::phoneAndTabletFiles).card("sims")),
                ElementsAre(folder + "11111111-2B78-4F3C-8E69-71B1D5C09E42: Simulated device 1",
                            folder + "33333333-2B78-4F3C-8E69-71B1D5C09E42: Simulated device 3"));
}

TEST_F(PhoneFiles, ComeWithTheOtherCardWhenOneIsDenied) {
    makeFile(xcode() / "iOS DeviceSupport/a");
    makeFile(devices() / "11111111-2B78-4F3C-8E69-71B1D5C09E42/data");
    const Denied folder(devices());
    const RuleResult result = run(rules::phoneAndTabletFiles);
    EXPECT_THAT(idsOf(result), ElementsAre("devsupport"));
    EXPECT_TRUE(result.blocked);
}

TEST_F(XcodeBuilds, AreNamedUpToTheLastHyphen) {
    const std::pair<const char*, const char*> cases[] = {
        {"MyApp-abcdefghijklmn", "MyApp"},
        {"My-App-abcdefghijklmn", "My-App"},
        {"Plain", "Plain"},
        {"Ends-", "Ends"},
        {"modulecache.noindex", "modulecache.noindex"},
        {"-key", ""},
    };
    std::vector<std::string> expected;
    for (const auto& [name, shown] : cases) {
        makeFile(xcode() / "DerivedData" / name / "file");
        expected.push_back(std::string("Library/Developer/Xcode/DerivedData/") + name + ": " + shown);
    }
    makeFile(xcode() / "DerivedData/ModuleCache.noindex/file");
    makeFile(xcode() / "DerivedData/a-file");
    expected.emplace_back("Library/Developer/Xcode/DerivedData/a-file: a");
    const RuleResult result = run(rules::xcodeBuilds);
    EXPECT_THAT(idsOf(result), ElementsAre("derived"));
    EXPECT_THAT(linesOf(result.card("derived")), ::testing::UnorderedElementsAreArray(expected));
    EXPECT_FALSE(result.cards[0].selected);
}

TEST_F(XcodeBuilds, LeaveTheSharedModuleCacheAlone) {
    makeFile(xcode() / "DerivedData/ModuleCache.noindex/file");
    EXPECT_THAT(run(rules::xcodeBuilds).cards, IsEmpty());
}

TEST_F(XcodeBuilds, AreArchivedByDay) {
    makeFile(xcode() / "Archives/2024-03-07/App.xcarchive/file");
    makeFile(xcode() / "Archives/2023-12-24/App.xcarchive/file", 100'000);
    makeFile(xcode() / "DerivedData/A-b/file");
    const RuleResult result = run(rules::xcodeBuilds);
    EXPECT_THAT(idsOf(result), ElementsAre("derived", "archives"));
    EXPECT_THAT(linesOf(result.card("archives")),
                ElementsAre("Library/Developer/Xcode/Archives/2023-12-24: Archives from 2023-12-24",
                            "Library/Developer/Xcode/Archives/2024-03-07: Archives from 2024-03-07"));
}

TEST_F(XcodeBuilds, SayWhichFolderMayNotBeListed) {
    makeFile(xcode() / "Archives/2024-03-07/file");
    makeFile(xcode() / "DerivedData/A-b/file");
    {
        const Denied folder(xcode() / "Archives");
        const RuleResult result = run(rules::xcodeBuilds);
        EXPECT_THAT(idsOf(result), ElementsAre("derived"));
        EXPECT_TRUE(result.blocked);
    }
    {
        const Denied folder(xcode() / "DerivedData");
        const RuleResult result = run(rules::xcodeBuilds);
        EXPECT_THAT(idsOf(result), ElementsAre("archives"));
        EXPECT_TRUE(result.blocked);
    }
    std::filesystem::remove_all(xcode() / "Archives");
    makeFile(xcode() / "Archives");
    EXPECT_FALSE(run(rules::xcodeBuilds).blocked);
}

}  // namespace
}  // namespace vesk

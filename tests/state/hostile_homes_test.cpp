// Unlikely homes: odd names, odd things where files are expected, other programs at work. All rules scan them, and a
// clean and an undo succeed.

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>

#include "core/scanner.h"
#include "platform/text.h"
#include "platform/trash/trash_info.h"
#include "rules/catalogue.h"
#include "state/store_home.h"
#include "support/file_names.h"
#include "support/private_mounts.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAreArray;

const std::vector<std::string> oddNames = {
    "two\nlines",
    "tab\tand\rreturn",
    "\"double\" 'single' `back` $(echo) ; & | > < * ?",
    "\\back\\slash%41%",
    "\x01\x02\x1B[31mred\x7F",
    "c1 \xC2\x9B"
    "31m",
    "\xE2\x80\xAEgpj.exe",
    "\xE2\x81\xA6isolated\xE2\x81\xA9",
    "zero\xE2\x80\x8Bwidth \xEF\xBB\xBF",
    " leading and trailing ",
    "-rf",
    "cafe\xCC\x81",
    "caf\xC3\xA9",
    "\xE5\xAE\xB6\xF0\x9F\x8F\xA0",
    std::string(255, 'n'),
    "n" + std::string(253, 'x') + "\n",
};
const std::vector<std::string> namesThatAreNotUtf8 = {"caf\xE9", "\xFF\xFE", "\xED\xA0\x80", std::string(255, '\xC3')};

class HostileHomeTest : public StoreHome {
protected:
    HostileHomeTest() { sources_.catalogue = Scanner::specs; }

    static fs::path caches() { return Scanner::home() / "Library/Caches"; }

    const Card& cacheCard() const {
        static const Card none;
        const auto card = std::find_if(store_->cards().begin(), store_->cards().end(),
                                       [](const Card& c) { return c.id == "caches"; });
        return card == store_->cards().end() ? none : *card;
    }

    std::vector<std::string> namesOffered() const {
        std::vector<std::string> names;
        for (const Entry& entry : cacheCard().entries) {
            names.push_back(entry.url.filename().string());
        }
        return names;
    }

    // The places in the Trash's records.
    static std::vector<std::string> placesOnRecord() {
        std::vector<std::string> places;
        for (const std::string& record : namesIn(homeTrash() / "info")) {
            places.push_back(placeInTrashInfo(contentOf(homeTrash() / "info" / record)).value_or("unreadable"));
        }
        return places;
    }

    // Makes these items, cleans those that can be cleaned, undoes that after a new start, and expects everything
    // unchanged.
    void expectCleanAndUndo(const std::vector<std::string>& names) {
        std::map<fs::path, std::map<std::string, std::string>> before;
        std::vector<std::string> movable;
        for (const std::string& name : names) {
            writeFile(caches() / name / name, "content of " + name);
            before[caches() / name] = portrait(caches() / name);
            if (isUtf8((caches() / name).string())) {
                movable.push_back((caches() / name).string());
            }
        }
        scannedStore();
        EXPECT_THAT(namesOffered(), UnorderedElementsAreArray(names));
        clean();
        ASSERT_TRUE(store_->celebration());
        EXPECT_EQ(store_->celebration()->failures, static_cast<std::int64_t>(names.size() - movable.size()));
        EXPECT_THAT(placesOnRecord(), UnorderedElementsAreArray(movable));
        EXPECT_EQ(namesIn(caches()).size(), names.size() - movable.size());

        ASSERT_EQ(makeStore().history().size(), 1U);
        undo();
        EXPECT_EQ(store_->notice(), "All " + std::to_string(movable.size()) + " items are back where they were.");
        for (const auto& [item, was] : before) {
            EXPECT_EQ(portrait(item), was) << item;
        }
        EXPECT_THAT(namesIn(homeTrash() / "info"), IsEmpty());
    }
};

TEST_F(HostileHomeTest, AnyNameGoesToTheTrashAndBack) {
    expectCleanAndUndo(namesHeld(oddNames));
}

TEST_F(HostileHomeTest, ANameThatIsNotUtf8StaysWhereItIs) {
    std::vector<std::string> names = namesHeld(namesThatAreNotUtf8);
    if (names.empty()) {
        GTEST_SKIP() << "this file system holds no names that are not UTF-8";
    }
    names.emplace_back("usual");
    expectCleanAndUndo(names);
}

// ---- Others at work -------------------------------------------------------------------------------------------------

TEST_F(HostileHomeTest, FilesMayGrowVanishAndBeReplacedWhileTheyAreMeasured) {
    const fs::path busy = caches() / "busy";
    constexpr std::int64_t page = 4096;
    constexpr int files = 40;
    makeFile(caches() / "quiet/file", 3 * page);
    makeFolder(busy);
    std::atomic<bool> stop = false;
    std::thread other([&] {
        for (unsigned round = 0; !stop; ++round) {
            const fs::path file = busy / std::to_string(round % files);
            std::error_code ignored;
            switch (round / files % 4) {
                case 0:
                    makeFile(file, page);
                    break;
                case 1:
                    fs::resize_file(file, 2 * page, ignored);
                    break;
                case 2:
                    fs::remove(file, ignored);
                    fs::create_directory(file, ignored);
                    break;
                default:
                    fs::remove(file, ignored);
            }
        }
    });
    makeStore();
    for (int i = 0; i < 20; ++i) {
        scan();
        for (const Entry& entry : cacheCard().entries) {
            EXPECT_THAT(entry.url, ::testing::AnyOf(busy, caches() / "quiet"));
            EXPECT_LE(entry.size, entry.url == busy ? files * page : 3 * page);
            EXPECT_GE(entry.size, entry.url == busy ? 0 : 3 * page);
        }
        EXPECT_THAT(namesOffered(), Contains("quiet"));
        EXPECT_THAT(store_->blockedAreas(), IsEmpty());
    }
    stop = true;
    other.join();
}

// ---- Odd things where a file is expected ----------------------------------------------------------------------------

// Opening one of them would wait for a writer, or reading it would never end.
TEST_F(HostileHomeTest, APipeIsNeitherReadNorOffered) {
    const fs::path home = testHome();
    const std::vector<fs::path> pipes = {caches() / "pipe",
                                         home / "Downloads/pipe",
                                         home / "Library/Logs/DiagnosticReports/old.ips",
                                         home / ".npm",
                                         testRoot() / "Applications/Tool.app/Contents/Info.plist",
                                         home / ".config/vesk/vesk.history",
                                         home / "code/site/package.json"};
    for (const fs::path& pipe : pipes) {
        makeFolder(pipe.parent_path());
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0) << pipe;
        setDates(pipe, daysAgo(400));
    }
    makeFile(caches() / "usual/file");
    scannedStore();
    EXPECT_THAT(namesOffered(), ::testing::ElementsAre("usual"));
    EXPECT_EQ(store_->cards().size(), 1U);
    clean();
    EXPECT_EQ(store_->celebration()->failures, 0);
    for (const fs::path& pipe : pipes) {
        EXPECT_TRUE(isThere(pipe)) << pipe;
    }
}

TEST_F(HostileHomeTest, ADeviceIsNeitherReadNorOffered) {
    if (!enterPrivateMounts()) {
        GTEST_SKIP() << "this system lets no ordinary user make mount namespaces";
    }
    const fs::path home = testHome();
    const std::vector<fs::path> devices = {
        caches() / "device", home / "Downloads/device", home / "Library/Logs/DiagnosticReports/old.ips",
        testRoot() / "Applications/Tool.app/Contents/Info.plist", home / ".config/vesk/vesk.history"};
    for (const fs::path& device : devices) {
        writeFile(device, "");
        ASSERT_TRUE(mountFolderAgain("/dev/zero", device)) << device;
        ASSERT_EQ(fs::status(device).type(), fs::file_type::character);
    }
    makeFile(caches() / "usual/file");
    scannedStore();
    EXPECT_THAT(namesOffered(), ::testing::ElementsAre("usual"));
    clean();
    EXPECT_EQ(store_->celebration()->failures, 0);
    for (const fs::path& device : devices) {
        EXPECT_EQ(fs::status(device).type(), fs::file_type::character) << device;
        unmount(device);
    }
}

// ---- A home that may not be read ------------------------------------------------------------------------------------

TEST_F(HostileHomeTest, AnUnreadableHomeNamesTheAreasAndBreaksNothingElse) {
    makeFile(caches() / "one/file");
    makeFile(testHome() / "Downloads/file");
    const fs::path clone = testRoot() / "private/var/folders/a/b/X/code_sign_clone";
    makeFile(clone / "file");
    fs::permissions(testHome(), fs::perms::none);
    scannedStore();
    EXPECT_THAT(store_->blockedAreas(), Contains("App caches"));
    EXPECT_THAT(store_->blockedAreas(), Contains("Old downloads"));
    ASSERT_EQ(store_->cards().size(), 1U) << "what lies elsewhere is offered still";
    EXPECT_EQ(store_->cards()[0].id, "clones");
    clean();
    EXPECT_EQ(store_->celebration()->failures, 1) << "there is no Trash to be had";
    EXPECT_TRUE(isThere(clone / "file"));

    fs::permissions(testHome(), fs::perms::owner_all);
    scan();
    EXPECT_THAT(store_->blockedAreas(), IsEmpty());
    EXPECT_THAT(namesOffered(), ::testing::ElementsAre("one"));
}

}  // namespace
}  // namespace vesk

// Receipts: what Vesk records about each run's items beside the history, and how an undo uses it.

#include "state/receipts.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <limits>

#include "state/history_codec.h"
#include "state/store_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

namespace fs = std::filesystem;
using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

LastingIdentity identity(FileType type, std::optional<std::uint64_t> inode, std::optional<std::int64_t> made) {
    return {type, inode, made ? std::optional(Date(std::chrono::nanoseconds(*made))) : std::nullopt};
}

StoredReceipt someReceipt() {
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    return {identity(FileType::folder, 12, 1'700'000'000'123'456'789),
            {TrashedIdentity{identity(FileType::file, 34, 56), identity(FileType::file, 78, 90), Date()}, std::nullopt,
             TrashedIdentity{identity(FileType::link, std::nullopt, -5), std::nullopt, std::nullopt},
             TrashedIdentity{identity(FileType::other, largest, std::nullopt),
                             identity(FileType::file, std::nullopt, std::nullopt), std::nullopt}}};
}

TEST(ReceiptTest, IsWrittenAsTheDocumentSays) {
    EXPECT_EQ(encodeReceipt(someReceipt()),
              "vesk receipt 1\n"
              "folder folder 12 1700000000123456789\n"
              "file 34 56 file 78 90 0\n"
              "-\n"
              "link - -5\n"
              "other 18446744073709551615 - file - - -\n");
    EXPECT_EQ(encodeReceipt({}), "vesk receipt 1\nfolder -\n");
}

TEST(ReceiptTest, IsReadAsItWasWritten) {
    for (const StoredReceipt& receipt : {someReceipt(), StoredReceipt()}) {
        EXPECT_EQ(decodeReceipt(encodeReceipt(receipt)), receipt);
    }
}

TEST(ReceiptTest, AnythingElseIsRefused) {
    const std::string whole = encodeReceipt(someReceipt());
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto read = decodeReceipt(whole.substr(0, length));
        EXPECT_TRUE(!read || (whole[length - 1] == '\n' && read->items.size() < 4)) << "cut at " << length;
    }
    for (const char* line :
         {"", " ", "file", "file 1", "file 1 2 ", "file 1 2 file", "file 1 2 file 3 4", "folder  1 2",
          "file 1 2 file 3 4 5 6", "file -1 2", "file 1x 2", "file 18446744073709551616 2",
          "file 1 9223372036854775808", "File 1 2", "-file 1 2", "- -"}) {
        EXPECT_FALSE(decodeReceipt(std::string("vesk receipt 1\nfolder -\n") + line + "\n")) << line;
    }
    EXPECT_FALSE(decodeReceipt("vesk receipt 2\nfolder -\n"));
    EXPECT_FALSE(decodeReceipt("vesk receipt 1\nfile 1 2\n"));
}

class ReceiptsTest : public StoreHome {
protected:
    const fs::path junk = testHome() / "Junk";
    const fs::path receipts = testHome() / ".config/vesk/receipts";

    ReceiptsTest() { offerItemsOf(junk); }

    Store& cleanedStore(const std::vector<std::string>& names = {"a", "b"}) {
        for (const std::string& name : names) {
            writeFile(junk / name, name);
        }
        store_ ? scan() : static_cast<void>(scannedStore());
        clean();
        return *store_;
    }
    fs::path newest() const { return receipts / store_->history().at(0).id.text(); }
    // Replaces the item by another one, under the same record.
    static void replace(const std::string& name) {
        fs::rename(trashFiles() / name, testHome() / "aside");
        writeFile(trashFiles() / name, "another item");
    }
    void expectBack(const std::string& name) {
        undo();
        EXPECT_EQ(contentOf(junk / name), name);
    }
};

TEST_F(ReceiptsTest, EachRunThatMovedSomethingHasOne) {
    Store& store = cleanedStore();
    EXPECT_THAT(namesIn(receipts), ElementsAre(store.history()[0].id.text()));
    EXPECT_EQ(modeOf(receipts), 0700U);
    EXPECT_EQ(modeOf(newest()), 0600U);
    const std::optional<StoredReceipt> stored = decodeReceipt(contentOf(newest()));
    ASSERT_TRUE(stored);
    ASSERT_THAT(stored->items, SizeIs(2));
    for (std::size_t i = 0; i < 2; ++i) {
        const HistoryEntry::Move& move = store.history()[0].moves[i];
        EXPECT_EQ(stored->items[i]->item, lastingIdentity(fs::path(move.trashed)));
        EXPECT_EQ(stored->items[i]->record,
                  lastingIdentity(trashInfo() / (fs::path(move.trashed).filename().string() + ".trashinfo")));
    }
    store.setPreviewOnly(true);
    writeFile(junk / "a", "a");
    scan();
    clean();
    EXPECT_THAT(namesIn(receipts), SizeIs(1)) << "a preview moves nothing";
}

TEST_F(ReceiptsTest, AnotherItemUnderTheSameRecordStays) {
    cleanedStore();
    replace("a");
    undo();
    EXPECT_EQ(contentOf(trashFiles() / "a"), "another item");
    EXPECT_FALSE(isThere(junk / "a"));
    EXPECT_EQ(contentOf(junk / "b"), "b");
    EXPECT_THAT(namesIn(trashInfo()), ElementsAre("a.trashinfo"));
}

TEST_F(ReceiptsTest, WithoutOneTheRecordDecides) {
    for (const bool isDamaged : {false, true}) {
        cleanedStore({"a"});
        isDamaged ? writeFile(newest(), "vesk receipt 1\nfolder -\n") : static_cast<void>(fs::remove(newest()));
        expectBack("a");
    }
}

TEST_F(ReceiptsTest, OneThatCannotBeReadStopsNoUndo) {
    cleanedStore({"a"});
    fs::permissions(newest(), fs::perms::none);
    expectBack("a");
}

// A home was copied to another disk, so everything in it is another file now.
TEST_F(ReceiptsTest, OneThatCameFromAnotherDiskSaysNothing) {
    cleanedStore({"a"});
    for (const fs::path& folder : {testHome() / ".config", testHome() / ".local"}) {
        fs::copy(folder, folder.string() + ".copy", fs::copy_options::recursive);
        fs::remove_all(folder);
        fs::rename(folder.string() + ".copy", folder);
    }
    store_.reset();
    makeStore();
    expectBack("a");
}

TEST_F(ReceiptsTest, GoesWithItsRun) {
    std::vector<HistoryEntry> older(49);
    writeFile(receipts / older[0].id.text(), "of a run that is kept");
    writeFile(receipts / Uuid::random().text(), "of a run that is gone");
    writeFile(receipts / (Uuid::random().text() + ".x8Gh2z"), "cut off");
    writeFile(receipts / "notes", "somebody's own");
    Preferences().setData("vesk.history", encodeHistory(older));
    cleanedStore({"a"});
    const std::string first = store_->history()[0].id.text();
    EXPECT_THAT(namesIn(receipts), ::testing::UnorderedElementsAre(older[0].id.text(), first, "notes"));
    cleanedStore({"a"});
    cleanedStore({"a"});
    EXPECT_THAT(namesIn(receipts), SizeIs(5)) << "three runs, an older one, and the notes";
}

TEST_F(ReceiptsTest, StaysWhenTheHistoryCannotBeStored) {
    cleanedStore({"a"});
    const std::string first = newest().filename();
    fs::permissions(testHome() / ".config/vesk", fs::perms::owner_read | fs::perms::owner_exec);
    store_.reset();
    makeStore();
    cleanedStore({"b"});
    EXPECT_THAT(namesIn(receipts), ::testing::Contains(first));
    fs::permissions(testHome() / ".config/vesk", fs::perms::owner_all);
}

TEST_F(ReceiptsTest, OneThatCouldNotBeStoredHoldsUntilItIs) {
    makeFolder(receipts);
    fs::permissions(receipts, fs::perms::owner_read | fs::perms::owner_exec);
    cleanedStore({"a"});
    EXPECT_THAT(namesIn(receipts), IsEmpty());
    replace("a");
    undo();
    EXPECT_EQ(contentOf(trashFiles() / "a"), "another item") << "known though it is not stored";
    fs::permissions(receipts, fs::perms::owner_all);
    const std::string run = newest().filename();
    store_.reset();
    EXPECT_THAT(namesIn(receipts), ElementsAre(run));
}

}  // namespace
}  // namespace vesk

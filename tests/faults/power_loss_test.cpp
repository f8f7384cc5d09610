// What has to be on the disk before what, by the order of the calls that Vesk makes. tests/soak/power_loss tries on
// real file systems what comes of it.

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <map>

#include "faults/fault_fits.h"
#include "faults/fault_run.h"
#include "faults/small_home.h"
#include "support/temporary_home.h"
#include "support/trash_home.h"

namespace vesk {
namespace {

using namespace testing;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::MatchesRegex;
using ::testing::Not;

// Of the calls of a phase, those that change names or wait for the disk, a letter each: m(ake a file), r(ename),
// d(elete), s(ync).
std::string orderOf(const FaultRun& run) {
    const std::map<std::string, char> letters = {
        {"open to make a file", 'm'}, {"rename", 'r'}, {"unlink or rmdir", 'd'}, {"fsync", 's'}};
    std::string order;
    for (const std::string& call : run.calls) {
        const auto letter = letters.find(call);
        order += letter == letters.end() ? "" : std::string(1, letter->second);
    }
    return order;
}

std::string repeated(const std::string& text, std::size_t times) {
    std::string all;
    for (; times > 0; --times) {
        all += text;
    }
    return all;
}

// The history, as a file of its own that takes the old one's place; the run's receipt likewise.
const std::string historyStored = "msrs";
const std::string receiptStored = "msrs";

class PowerLossTest : public TemporaryHome {
protected:
    static SmallHome made() {
        SmallHome home;
        home.make();
        return home;
    }

    SmallHome home_ = made();
    const std::size_t items = home_.items().size();
};

TEST_F(PowerLossTest, MovesAreOnTheDiskBeforeTheHistoryTellsOfThem) {
    const FaultRun clean = runDriver({"scan", "clean"}, {.phase = "clean"});
    // The notes and all records are made, and written, and waited for, before the first item moves; then the notes go.
    // An item whose name is taken in the Trash has found that out by trying to make its record.
    const std::string order = orderOf(clean);
    const std::string records = repeated("m", 1 + items) + "m*" + repeated("s", 2 * (1 + items) + 1);
    EXPECT_THAT(order, MatchesRegex(records + repeated("r", items) + "ds" + receiptStored + historyStored));
    const FaultRun undo = runDriver({"undo"}, {.phase = "undo"});
    EXPECT_EQ(orderOf(undo), repeated("r", items) + "s" + repeated("d", items) + historyStored);
}

TEST_F(PowerLossTest, EachMoveIsSyncedWhereNamesAreNotOrdered) {
    const FaultRun clean = runDriver({"scan", "clean"}, {.phase = "clean", .unordered = true});
    const std::string order = orderOf(clean);
    EXPECT_THAT(order, EndsWith("mssrss" + std::string("s") + receiptStored + historyStored));
    EXPECT_THAT(order, Not(HasSubstr("sr" + std::string("m")))) << "the next record is made before the move is synced";
    const FaultRun undo = runDriver({"undo"}, {.phase = "undo", .unordered = true});
    EXPECT_EQ(orderOf(undo), repeated("rss", items) + "s" + repeated("d", items) + historyStored);
}

// The number among the calls that can fail with an error (by its place in the table) of the first wait for the disk.
long firstSync(const FaultRun& run, std::size_t error) {
    long number = 1;
    for (const std::string& call : run.calls) {
        const auto fit = std::find_if(fits.begin(), fits.end(), [&](const Fit& known) { return call == known.name; });
        if (fit->call == Call::sync) {
            break;
        }
        number += canFail(*fit, error) ? 1 : 0;
    }
    return number;
}

TEST_F(PowerLossTest, ARecordStaysUntilTheMoveBackIsOnTheDisk) {
    runDriver({"scan", "clean"});
    const FaultRun undo = runDriver({"undo"}, {.phase = "undo"});
    home_.make();
    runDriver({"scan", "clean"});
    const std::vector<std::string> records = namesIn(homeTrash() / "info");
    ASSERT_GT(records.size(), items);
    const auto eio = std::find_if(errors.begin(), errors.end(), [](const Error& error) { return error.number == EIO; });
    const long at = firstSync(undo, static_cast<std::size_t>(eio - errors.begin()));
    const FaultRun failed = runDriver({"undo"}, {.phase = "undo", .error = "EIO", .at = at});
    ASSERT_EQ(failed.hit, "fsync EIO");
    EXPECT_EQ(failed.told["notice"], "All " + std::to_string(items) + " items are back where they were.");
    EXPECT_EQ(namesIn(homeTrash() / "info"), records);
    // The next undo finds the items back, and ends what is left of them in the Trash.
    runDriver({"undo"});
    home_.expectAllInPlace();
}

}  // namespace
}  // namespace vesk
